#pragma once
#include "base/Resample.h"
#include "codecs/CodecSupport.h"
#include "support/Places.h"
#include <algorithm>
#include <cmath>
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
    std::string const root = photosFolder();
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
    return fileBytes(photosFolder() + "/" + row.at("path"));
}

inline std::string sizeText(PixelSize size)
{
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

/// Whether the colours are a matter of convention: CMYK without a usable profile, light without a
/// white, what a sensor saw; or the reference shows another frame. Only what the picture shows can
/// be compared then.
inline bool isLoose(PhotoAnswers const& row)
{
    auto const& path = row.at("path");
    return path.find("cmyk") != std::string::npos || path.find("ycck") != std::string::npos
        || path.find("float") != std::string::npos || path.starts_with("raw/")
        || path == "jxl/anim_newtons_cradle.jxl";
}

/// Whether a file that others refuse may be shown here: one is an attack on a single library, and
/// the still picture in it is whole.
inline bool mayBeShown(PhotoAnswers const& row)
{
    return row.at("kind") != "broken" || row.at("path") == "broken/avif_poc.avif";
}

/// Root mean square difference in grey levels, both reduced to 64 pixels, on black.
inline double difference(Bitmap const& a, Bitmap const& b)
{
    auto const size = fittedSize(a.size, 64);
    auto const left = resampled(a, size);
    auto const right = resampled(b, size);
    double sum = 0;
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            for (int c = 0; c < 4; ++c) {
                auto const d = pixelAt(left, x, y)[c] - pixelAt(right, x, y)[c];
                sum += d * d;
            }
        }
    }
    return std::sqrt(sum / (4.0 * size.width * size.height));
}

/// How alike the pictures are whatever their tones: the correlation of their brightness.
inline double likeness(Bitmap const& a, Bitmap const& b)
{
    auto const size = fittedSize(a.size, 64);
    auto const left = resampled(a, size);
    auto const right = resampled(b, size);
    double n = 0, sumL = 0, sumR = 0, sumLL = 0, sumRR = 0, sumLR = 0;
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            auto const l = double(pixelAt(left, x, y)[1]);
            auto const r = double(pixelAt(right, x, y)[1]);
            n += 1;
            sumL += l;
            sumR += r;
            sumLL += l * l;
            sumRR += r * r;
            sumLR += l * r;
        }
    }
    return (n * sumLR - sumL * sumR)
        / std::sqrt((n * sumLL - sumL * sumL) * (n * sumRR - sumR * sumR));
}

} // namespace pixelhain
