#include "qt/ports/QtPreferences.h"
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <chrono>

namespace pixelhain {

namespace {

// Room for the paths of 50,000 folders, the longest of our settings; a larger file is not ours, and
// the next change replaces it.
constexpr qint64 largestFile = 16 << 20;

// Changes come in groups (a slider that moves): one write serves them all.
constexpr std::chrono::milliseconds gathering { 250 };

IniText readFile(QString const& path)
{
    QFileInfo const info(path);
    QFile file(path);
    if (!info.isFile() || info.size() > largestFile || !file.open(QIODevice::ReadOnly))
        return {};
    auto const bytes = file.read(largestFile);
    return IniText({ bytes.constData(), static_cast<std::size_t>(bytes.size()) });
}

// Only a file is written anew: where a link leads to a device, replacing that would take the device
// from everyone else.
void writeFile(QString const& path, std::string const& text)
{
    if (QFileInfo const there(path); there.exists() && !there.isFile())
        return;
    QDir().mkpath(QFileInfo(path).absolutePath());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(text.data(), static_cast<qint64>(text.size()));
    file.commit();
}

} // namespace

QString QtPreferences::defaultFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/pixelhain/pixelhain.ini");
}

QtPreferences::QtPreferences(QString const& file)
    : file_(file)
    , ini_(readFile(file))
{
}

QtPreferences::~QtPreferences()
{
    {
        std::scoped_lock const guard(lock_);
        isEnding_ = true;
    }
    wake_.notify_one();
    if (writer_.joinable())
        writer_.join();
}

std::optional<bool> QtPreferences::boolean(std::string_view key) const
{
    return ini_.boolean(key);
}

std::optional<double> QtPreferences::number(std::string_view key) const
{
    return ini_.number(key);
}

std::optional<std::string> QtPreferences::text(std::string_view key) const
{
    return ini_.text(key);
}

std::optional<std::vector<std::string>> QtPreferences::texts(std::string_view key) const
{
    return ini_.texts(key);
}

void QtPreferences::setBoolean(std::string_view key, bool value)
{
    changed(ini_.setBoolean(key, value));
}

void QtPreferences::setNumber(std::string_view key, double value)
{
    changed(ini_.setNumber(key, value));
}

void QtPreferences::setText(std::string_view key, std::string const& value)
{
    changed(ini_.setText(key, value));
}

void QtPreferences::setTexts(std::string_view key, std::vector<std::string> const& values)
{
    changed(ini_.setTexts(key, values));
}

void QtPreferences::changed(bool didChange)
{
    if (!didChange)
        return;
    {
        std::scoped_lock const guard(lock_);
        toWrite_ = ini_.toString();
    }
    if (!writer_.joinable())
        writer_ = std::thread([this] { writeChanges(); });
    wake_.notify_one();
}

void QtPreferences::writeChanges()
{
    std::unique_lock guard(lock_);
    for (;;) {
        wake_.wait(guard, [this] { return isEnding_ || toWrite_; });
        wake_.wait_for(guard, gathering, [this] { return isEnding_; });
        if (auto const text = std::exchange(toWrite_, std::nullopt)) {
            guard.unlock();
            writeFile(file_, *text);
            guard.lock();
        }
        if (isEnding_ && !toWrite_)
            return;
    }
}

} // namespace pixelhain
