#include "app/AboutText.h"

namespace pixelhain {

std::string about::version(std::string_view number)
{
    return "Version " + std::string(number);
}

std::string about::missingHolds(std::string_view missing)
{
    if (missing.empty())
        return {};
    return "Die Prozesse, die Fotos lesen, sind auf diesem System schwächer abgeschottet als "
           "vorgesehen. Dem Kernel fehlt: "
        + std::string(missing) + ".";
}

} // namespace pixelhain
