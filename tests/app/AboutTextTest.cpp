#include "app/AboutText.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("the program tells its version and what the kernel lacks for it")
{
    CHECK(about::version("1.2") == "Version 1.2");
    CHECK(about::missingHolds("Landlock")
        == "Die Prozesse, die Fotos lesen, sind auf diesem System schwächer abgeschottet als "
           "vorgesehen. Dem Kernel fehlt: Landlock.");
    CHECK(about::missingHolds("").empty());
}
