#pragma once
#include "codecs/CodecSupport.h"
#include <fstream>
#include <map>
#include <sstream>
#include <string>

namespace pixelhain {

inline FileBytes fileBytes(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>() };
}

/// One line of the collection's table of answers.
using PhotoAnswers = std::map<std::string, std::string>;

/// The lines about files of `formats` (the folders); empty where there is no collection.
inline std::vector<PhotoAnswers> photoAnswers(std::vector<std::string> const& formats)
{
    auto const cells = [](std::string const& line) {
        std::vector<std::string> found;
        std::istringstream stream(line);
        for (std::string cell; std::getline(stream, cell, '\t');)
            found.push_back(cell);
        return found;
    };
    std::vector<PhotoAnswers> answers;
    std::string const root = PIXELHAIN_PHOTOS;
    std::ifstream table(root + "/expected.tsv");
    std::string line;
    if (root.empty() || !std::getline(table, line))
        return answers;
    auto const names = cells(line);
    while (std::getline(table, line)) {
        auto const values = cells(line);
        PhotoAnswers row;
        for (std::size_t i = 0; i < names.size(); ++i)
            row[names[i]] = i < values.size() ? values[i] : "-";
        auto const folder = row["path"].substr(0, row["path"].find('/'));
        if (std::find(formats.begin(), formats.end(), folder) != formats.end())
            answers.push_back(row);
    }
    return answers;
}

inline FileBytes photoBytes(PhotoAnswers const& row)
{
    return fileBytes(std::string(PIXELHAIN_PHOTOS) + "/" + row.at("path"));
}

inline std::string sizeText(PixelSize size)
{
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

} // namespace pixelhain
