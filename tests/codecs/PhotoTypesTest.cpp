#include "codecs/PhotoTypes.h"
#include "codecs/CodecImageTypes.h"
#include <algorithm>
#include <doctest/doctest.h>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

using namespace pixelhain;

namespace {

// What stands in `line` between `before` and the next quotation mark.
std::optional<std::string> quoted(std::string const& line, std::string_view before)
{
    auto const start = line.find(before);
    if (start == std::string::npos)
        return {};
    auto const first = start + before.size();
    return line.substr(first, line.find('"', first) - first);
}

// The types that the desktops' shared database gives to names, by extension; one extension may
// stand for several. Programs that are installed bring more of their own, in other files.
std::map<std::string, std::set<std::string>> typesOfTheDesktop()
{
    std::map<std::string, std::set<std::string>> types;
    std::ifstream lines("/usr/share/mime/packages/freedesktop.org.xml");
    std::string type;
    for (std::string line; std::getline(lines, line);) {
        type = quoted(line, "<mime-type type=\"").value_or(type);
        if (auto const extension = quoted(line, "pattern=\"*."))
            types[*extension].insert(type);
    }
    return types;
}

} // namespace

TEST_CASE("each photo type has an extension of its own and the type of an image")
{
    CodecImageTypes const counted;
    std::set<std::string_view> seen;
    for (auto const& type : photoTypes()) {
        CAPTURE(type.extension);
        CHECK(counted.isImageExtension(type.extension));
        CHECK(seen.insert(type.extension).second);
        CHECK(type.mimeType.starts_with("image/"));
        CHECK(type.mimeType.find_first_of("; \n") == std::string_view::npos);
    }
}

TEST_CASE("what the desktop calls a photo is what we call it")
{
    auto const desktop = typesOfTheDesktop();
    if (desktop.empty()) {
        MESSAGE("there is no shared database of types");
        return;
    }
    for (auto const& type : photoTypes()) {
        auto const theirs = desktop.find(std::string(type.extension));
        if (theirs == desktop.end())
            continue;
        CAPTURE(type.extension);
        CHECK(theirs->second.contains(std::string(type.mimeType)));
    }
}
