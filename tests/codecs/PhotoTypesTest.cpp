#include "codecs/PhotoTypes.h"
#include "codecs/CodecImageTypes.h"
#include <algorithm>
#include <doctest/doctest.h>
#include <fstream>
#include <map>
#include <set>
#include <string>

using namespace pixelhain;

namespace {

// The types that the desktop's shared database gives to names, by extension. It is made of lines
// like "50:image/jpeg:*.jpg"; one extension may stand for several.
std::map<std::string, std::set<std::string>> typesOfTheDesktop()
{
    std::map<std::string, std::set<std::string>> types;
    std::ifstream lines("/usr/share/mime/globs2");
    for (std::string line; std::getline(lines, line);) {
        auto const first = line.find(':');
        auto const second = line.find(":*.", first + 1);
        if (first != std::string::npos && second != std::string::npos)
            types[line.substr(second + 3)].insert(line.substr(first + 1, second - first - 1));
    }
    return types;
}

} // namespace

TEST_CASE("each photo type has an extension of its own and the type of an image")
{
    CodecImageTypes const counted;
    std::set<std::string_view> seen;
    for (auto const& [extension, mimeType] : photoTypes()) {
        CAPTURE(extension);
        CHECK(counted.isImageExtension(extension));
        CHECK(seen.insert(extension).second);
        CHECK(mimeType.starts_with("image/"));
        CHECK(mimeType.find_first_of("; \n") == std::string_view::npos);
    }
}

TEST_CASE("what the desktop calls a photo is what we call it")
{
    auto const desktop = typesOfTheDesktop();
    if (desktop.empty()) {
        MESSAGE("there is no shared database of types");
        return;
    }
    for (auto const& [extension, mimeType] : photoTypes()) {
        auto const theirs = desktop.find(std::string(extension));
        if (theirs == desktop.end())
            continue;
        CAPTURE(extension);
        CHECK(theirs->second.contains(std::string(mimeType)));
    }
}
