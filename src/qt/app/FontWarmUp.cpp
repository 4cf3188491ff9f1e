#include "qt/app/FontWarmUp.h"
#include <QFontDatabase>
#include <fontconfig/fontconfig.h>
#include <system_error>
#include <utility>

namespace pixelhain {

namespace {

// The lists that fontconfig keeps in files come to memory when they are gone through.
void listFonts()
{
    auto* const all = FcPatternCreate();
    auto* const told
        = FcObjectSetBuild(FC_FAMILY, FC_STYLE, FC_WEIGHT, FC_SLANT, FC_WIDTH, FC_SPACING, FC_FILE,
            FC_INDEX, FC_LANG, FC_CHARSET, FC_FOUNDRY, FC_SCALABLE, FC_PIXEL_SIZE, nullptr);
    if (auto* const fonts = FcFontList(nullptr, all, told))
        FcFontSetDestroy(fonts);
    FcObjectSetDestroy(told);
    FcPatternDestroy(all);
}

void findFonts(std::future<bool> toolkit)
{
    FcInit();
    listFonts();
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
