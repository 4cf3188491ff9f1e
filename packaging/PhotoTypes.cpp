#include "codecs/PhotoTypes.h"
#include <fstream>
#include <set>
#include <string>

// Writes what the desktop's files need of the table of photos, as CMake reads it, into the file
// that is named.
int main(int count, char** words)
{
    if (count != 2)
        return 2;
    std::set<std::string_view> mimeTypes;
    std::string extensions;
    for (auto const& type : pixelhain::photoTypes()) {
        mimeTypes.insert(type.mimeType);
        extensions += (extensions.empty() ? "" : "|") + std::string(type.extension);
    }
    std::string entries;
    std::string elements;
    for (auto const type : mimeTypes) {
        entries += std::string(type) + ";";
        elements += "    <mediatype>" + std::string(type) + "</mediatype>\n";
    }
    elements.pop_back();
    std::ofstream out(words[1]);
    out << "set(PHOTO_MIME_TYPES \"" << entries << "\")\n"
        << "set(PHOTO_MEDIATYPES \"" << elements << "\")\n"
        << "set(PHOTO_EXTENSIONS \"" << extensions << "\")\n";
    out.close();
    return out ? 0 : 1;
}
