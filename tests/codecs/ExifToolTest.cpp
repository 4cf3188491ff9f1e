#include "codecs/FileProperties.h"
#include "codecs/PhotoCollection.h"
#include "posix/OpenedFile.h"
#include "support/ExifFields.h"
#include "support/Places.h"
#include "support/TemporaryFolder.h"
#include <array>
#include <cstdio>
#include <doctest/doctest.h>
#include <filesystem>
#include <map>

using namespace pixelhain;

namespace {

// The fields that are compared, from the EXIF directory or else from the first one.
constexpr auto fields = std::to_array<char const*>({ "Make", "Model", "DateTimeOriginal",
    "LensModel", "FocalLength", "FNumber", "ExposureTime", "ISO" });

using Answers = std::map<std::string, std::string>; ///< "-" for what is not stated

// What ExifTool, another program, says of the files; empty where it is not installed.
std::map<std::string, Answers> exifToolAnswers(std::vector<std::string> const& files)
{
    TemporaryFolder const folder;
    std::string arguments = "-T\n-n\n-m\n-q\n-q\n-Directory\n-FileName\n";
    for (auto const* const field : fields)
        arguments += "-IFD0:" + std::string(field) + "\n-ExifIFD:" + field + "\n";
    for (auto const& file : files)
        arguments += file + "\n";
    auto const list = folder.file("arguments", arguments);
    auto const command = "exiftool -@ '" + std::string(list.path()) + "' 2>/dev/null";
    std::map<std::string, Answers> answers;
    auto* const pipe = ::popen(command.c_str(), "r");
    REQUIRE(pipe != nullptr);
    std::string text;
    for (std::array<char, 4096> part;
         auto const got = std::fread(part.data(), 1, part.size(), pipe);)
        text.append(part.data(), got);
    ::pclose(pipe);
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::vector<std::string> cells;
        std::istringstream stream(line);
        for (std::string cell; std::getline(stream, cell, '\t');)
            cells.push_back(cell);
        if (cells.size() != 2 + 2 * fields.size())
            continue;
        auto& answer = answers[cells[0] + "/" + cells[1]];
        for (std::size_t i = 0; i < fields.size(); ++i)
            answer[fields[i]] = cells[3 + 2 * i] != "-" ? cells[3 + 2 * i] : cells[2 + 2 * i];
    }
    return answers;
}

// ExifTool leaves out blanks at the end.
std::string plain(std::optional<std::string> text)
{
    if (!text)
        return "-";
    text->erase(text->find_last_not_of(' ') + 1);
    return *text;
}

bool isSame(std::optional<double> number, std::string const& wanted)
{
    if (!number || wanted == "-")
        return !number && wanted == "-";
    return std::stod(wanted) == doctest::Approx(*number).epsilon(1e-8);
}

std::string isoText(std::vector<std::uint32_t> const& values)
{
    std::string text;
    for (auto const value : values)
        text += (text.empty() ? "" : " ") + std::to_string(value);
    return text.empty() ? "-" : text;
}

void compare(std::string const& file, Answers const& wanted)
{
    CAPTURE(file);
    auto bytes = OpenedFile::open(FileUrl(file));
    if (!bytes || bytes->size() == 0)
        return;
    auto const properties = gatherProperties(*bytes);
    // This kind names its camera in a way of its own, where ExifTool does not call it EXIF.
    if (!file.ends_with(".crw")) {
        CHECK(plain(properties.make) == wanted.at("Make"));
        CHECK(plain(properties.model) == wanted.at("Model"));
    }
    CHECK(plain(properties.dateTimeOriginal) == wanted.at("DateTimeOriginal"));
    CHECK(plain(properties.lensModel) == wanted.at("LensModel"));
    CHECK_MESSAGE(isSame(properties.focalLength, wanted.at("FocalLength")), "focal length");
    CHECK_MESSAGE(isSame(properties.fNumber, wanted.at("FNumber")), "F-number");
    CHECK_MESSAGE(isSame(properties.exposureTime, wanted.at("ExposureTime")), "exposure time");
    CHECK(isoText(properties.isoSpeedRatings) == wanted.at("ISO"));
}

void compareAll(std::vector<std::string> const& files)
{
    auto const answers = exifToolAnswers(files);
    if (answers.empty()) {
        MESSAGE("ExifTool is not installed");
        return;
    }
    for (auto const& file : files) {
        CAPTURE(file);
        REQUIRE(answers.contains(file));
        compare(file, answers.at(file));
    }
}

} // namespace

TEST_CASE("every photo states what ExifTool reads in it")
{
    std::vector<std::string> files;
    for (auto const& row : photoAnswers(
             { "jpeg", "png", "gif", "webp", "tiff", "bmp", "heif", "avif", "jxl", "raw" })) {
        if (row.at("kind") == "ok")
            files.push_back(photosFolder() + "/" + row.at("path"));
    }
    if (!files.empty())
        compareAll(files);
}

TEST_CASE("files of our own making state what ExifTool reads in them")
{
    using Field = ExifField;
    TemporaryFolder const folder;
    std::vector<std::string> files;
    auto const add = [&](std::string const& name, FileBytes const& bytes) {
        files.emplace_back(
            folder.file(name, { reinterpret_cast<char const*>(bytes.data()), bytes.size() })
                .path());
    };
    auto const pixels = RgbaPixels::filled({ 40, 30 }, 0x8040C0FF);
    for (auto const isBigEndian : { false, true }) {
        auto const block = exifOf({ Field::ascii(0x010F, "Canon"), Field::ascii(0x0110, "R5") },
            { Field::fraction(0x829A, { 1, 250 }), Field::fraction(0x829D, { 18, 10 }),
                Field::numbers(0x8827, { 200, 400 }), Field::ascii(0x9003, "2023:05:17 14:30:12"),
                Field::fraction(0x920A, { 50, 1 }), Field::ascii(0xA434, "RF50mm F1.8 STM") },
            isBigEndian);
        auto const ending = std::string(isBigEndian ? "MM" : "II");
        JpegOptions jpeg;
        jpeg.exif = block;
        add(ending + ".jpg", writeJpeg(pixels, jpeg));
        PngOptions png;
        png.exif = block;
        add(ending + ".png", writePng(pixels, png));
        WebpOptions webp;
        webp.exif = block;
        add(ending + ".webp", writeWebp(pixels, webp));
        add(ending + ".tif", block);
    }
    compareAll(files);
}
