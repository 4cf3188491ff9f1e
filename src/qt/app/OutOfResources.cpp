#include "qt/app/OutOfResources.h"
#include <QLatin1String>
#include <QLoggingCategory>
#include <QString>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <system_error>
#include <unistd.h>

namespace pixelhain {

namespace {

constexpr char const* noThreads = "pixelhain: Das System lässt keine weiteren Threads zu.\n";

char const* reasonToEnd()
{
    auto const current = std::current_exception();
    if (!current)
        return nullptr;
    try {
        std::rethrow_exception(current);
    } catch (std::bad_alloc const&) {
        return "pixelhain: Der Arbeitsspeicher reicht nicht.\n";
    } catch (std::system_error const& error) {
        if (error.code() == std::errc::resource_unavailable_try_again)
            return noThreads;
    } catch (...) {
    }
    return nullptr;
}

// Nothing here may need memory.
[[noreturn]] void endFor(char const* reason)
{
    [[maybe_unused]] auto const written = ::write(STDERR_FILENO, reason, std::strlen(reason));
    std::_Exit(1);
}

[[noreturn]] void ended()
{
    auto const* const reason = reasonToEnd();
    if (!reason)
        std::abort();
    endFor(reason);
}

QtMessageHandler otherMessages = nullptr;

// The toolkit goes on without the thread and waits for it for ever: parts of a gradient are painted
// by threads, and the window would stand still. What it reports is all that is ever heard of it.
void hearOfMissingThreads(QtMsgType type, QMessageLogContext const& context, QString const& message)
{
    otherMessages(type, context, message);
    if (message.startsWith(QLatin1String("QThread::start: Thread creation error")))
        endFor(noThreads);
}

QLoggingCategory::CategoryFilter otherRules = nullptr;

// Whatever the user has switched off: a message that is never made is heard by nobody.
void keepReports(QLoggingCategory* category)
{
    otherRules(category);
    if (QLatin1String(category->categoryName()) == QLatin1String("default"))
        category->setEnabled(QtCriticalMsg, true);
}

} // namespace

void sayWhyWhenOutOfResources()
{
    std::set_terminate(ended);
    otherMessages = qInstallMessageHandler(hearOfMissingThreads);
    otherRules = QLoggingCategory::installFilter(nullptr); // ours is called before it returns
    QLoggingCategory::installFilter(keepReports);
}

} // namespace pixelhain
