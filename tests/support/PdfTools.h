#pragma once
#include "base/FileUrl.h"
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace pixelhain {

/// What a program prints when it is run with a file.
inline std::string printed(std::string const& program, FileUrl const& file)
{
    auto const command = program + " '" + std::string(file.path()) + "' 2>&1";
    std::unique_ptr<FILE, int (*)(FILE*)> const pipe(::popen(command.c_str(), "r"), ::pclose);
    if (!pipe)
        throw std::runtime_error("no new process");
    std::string text;
    std::array<char, 4096> buffer {};
    while (auto const count = std::fread(buffer.data(), 1, buffer.size(), pipe.get()))
        text.append(buffer.data(), count);
    return text;
}

/// The value of a line "Name:   value" of pdfinfo.
inline std::string pdfInfo(FileUrl const& file, std::string const& name)
{
    std::istringstream lines(printed("pdfinfo", file));
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(name + ":"))
            return line.substr(line.find_first_not_of(' ', name.size() + 1));
    return {};
}

/// Whether another program finds nothing wrong with the file.
inline bool isSoundPdf(FileUrl const& file)
{
    auto const command = "qpdf --check '" + std::string(file.path()) + "' >/dev/null 2>&1";
    return std::system(command.c_str()) == 0;
}

/// A word on a page, in points from the page's top left corner.
struct PdfWord {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    std::string text;
};

/// The words of a page, from 1.
inline std::vector<PdfWord> wordsOf(FileUrl const& file, int page = 1)
{
    auto const number = std::to_string(page);
    auto const program = "f() { pdftotext -bbox -f " + number + " -l " + number + " \"$1\" -; }; f";
    std::istringstream lines(printed(program, file));
    std::vector<PdfWord> words;
    for (std::string line; std::getline(lines, line);) {
        PdfWord word;
        std::array<char, 512> text {};
        constexpr auto* form
            = " <word xMin=\"%lf\" yMin=\"%lf\" xMax=\"%lf\" yMax=\"%lf\">%511[^<]</word>";
        if (std::sscanf(
                line.c_str(), form, &word.left, &word.top, &word.right, &word.bottom, text.data())
            == 5) {
            word.text = text.data();
            words.push_back(word);
        }
    }
    return words;
}

inline std::optional<PdfWord> wordOf(FileUrl const& file, std::string const& text, int page = 1)
{
    for (auto const& word : wordsOf(file, page))
        if (word.text == text)
            return word;
    return std::nullopt;
}

/// All text of a file as it is read, without line breaks at its end.
inline std::string textOf(FileUrl const& file)
{
    return printed("f() { pdftotext \"$1\" -; }; f", file);
}

/// A picture in a file, as pdfimages lists it.
struct PdfImage {
    int width = 0;
    int height = 0;
    std::string color;
    std::string encoding;
};
inline std::vector<PdfImage> imagesOf(FileUrl const& file)
{
    std::istringstream lines(printed("pdfimages -list", file));
    std::vector<PdfImage> images;
    std::string line;
    std::getline(lines, line);
    std::getline(lines, line);
    while (std::getline(lines, line)) {
        std::istringstream fields(line);
        std::string page, number, type, components, bits;
        PdfImage image;
        fields >> page >> number >> type >> image.width >> image.height >> image.color >> components
            >> bits >> image.encoding;
        images.push_back(image);
    }
    return images;
}

/// A page as pixels, R, G, B row by row, at 72 pixels an inch: one a point.
struct PagePixels {
    int width = 0;
    int height = 0;
    std::string rgb;
    std::array<int, 3> at(int x, int y) const
    {
        auto const offset = (static_cast<std::size_t>(y) * static_cast<std::size_t>(width)
                                + static_cast<std::size_t>(x))
            * 3;
        auto const byte
            = [&](std::size_t i) { return static_cast<unsigned char>(rgb[offset + i]); };
        return { byte(0), byte(1), byte(2) };
    }
};
inline PagePixels pixelsOf(FileUrl const& file, int page = 1)
{
    auto const number = std::to_string(page);
    auto const ppm = printed("pdftoppm -r 72 -f " + number + " -l " + number, file);
    PagePixels pixels;
    int offset = 0;
    if (std::sscanf(ppm.c_str(), "P6 %d %d 255%n", &pixels.width, &pixels.height, &offset) < 2)
        throw std::runtime_error("no picture of a page");
    pixels.rgb = ppm.substr(static_cast<std::size_t>(offset) + 1);
    return pixels;
}

} // namespace pixelhain
