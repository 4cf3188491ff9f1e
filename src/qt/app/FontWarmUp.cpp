#include "qt/app/FontWarmUp.h"
#include <fontconfig/fontconfig.h>
#include <system_error>
#include <thread>

namespace pixelhain {

void warmUpFonts()
{
    // Without a thread the toolkit finds them by itself.
    try {
        std::thread(FcInit).detach();
    } catch (std::system_error const&) {
    }
}

} // namespace pixelhain
