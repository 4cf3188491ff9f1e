#include "model/FolderNames.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("a package is told by its extension, in any letter case")
{
    for (char const* const name : { "Fotos.photoslibrary", "Alt.aplibrary", "Vorschau.lrdata",
             "Rechner.app", "Teil.BUNDLE", "Urlaub.PhotosLibrary" })
        CHECK(isPackageName(name));
    for (char const* const name : { "Urlaub", "2024.05", "app", ".app", "x.appx", "x.app.alt", "" })
        CHECK_FALSE(isPackageName(name));
}

TEST_CASE("a name that begins with a dot is hidden")
{
    CHECK(isHiddenName(".x.jpg"));
    CHECK_FALSE(isHiddenName("x.jpg"));
    CHECK_FALSE(isHiddenName(""));
}
