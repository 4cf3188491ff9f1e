#include "qt/app/FontWarmUp.h"
#include <QFontDatabase>
#include <fontconfig/fontconfig.h>
#include <system_error>
#include <utility>

namespace pixelhain {

namespace {

void findFonts(std::future<bool> toolkit)
{
    FcInit();
    // Any question has the toolkit read all there are.
    if (toolkit.get())
        static_cast<void>(QFontDatabase::hasFamily(QString()));
}

} // namespace

FontWarmUp::FontWarmUp()
{
    // Without a thread the toolkit finds them by itself.
    try {
        thread_ = std::thread(findFonts, toolkit_.get_future());
    } catch (std::system_error const&) {
    }
}

FontWarmUp::~FontWarmUp()
{
    if (!isTold_)
        toolkit_.set_value(false);
    if (thread_.joinable())
        thread_.join();
}

void FontWarmUp::toolkitIsReady()
{
    if (!std::exchange(isTold_, true))
        toolkit_.set_value(true);
}

} // namespace pixelhain
