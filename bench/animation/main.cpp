// pixelhain-bench-animation make FOLDER | play FILE SECONDS
//
// make: writes animations of 500 frames, 1920 × 1080, 40 ms each, as GIF, PNG and WebP.
// play: plays one as the viewer does, with its decoder process, and prints how late frames came and
// what this program and its processes took of the memory at most, shared pages counted once.
#include "cli/ConsoleLoop.h"
#include "decoder/ChosenDecoder.h"
#include "posix/ThreadPool.h"
#include "support/AnimationWriters.h"
#include "viewer/AnimatedImageView.h"
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <unistd.h>

using namespace pixelhain;
using Seconds = std::chrono::duration<double>;

namespace {

constexpr PixelSize canvas { 1920, 1080 };
constexpr int frames = 500;
constexpr int different = 5; ///< further ones repeat them: nothing is kept, so nobody notices
constexpr std::chrono::milliseconds delay { 40 };

RgbaPixels picture(int number)
{
    auto pixels = RgbaPixels::filled(canvas, 0x000000FF);
    for (int y = 0; y < canvas.height; ++y) {
        for (int x = 0; x < canvas.width; ++x) {
            auto* at = pixels.at(x, y);
            at[0] = static_cast<std::uint8_t>((x + number * 50) / 8);
            at[1] = static_cast<std::uint8_t>((y + x / 3) / 6);
            at[2] = static_cast<std::uint8_t>((x * 7 + y * 13 + number * 29) % 64);
        }
    }
    return pixels;
}

FileBytes::const_iterator at(FileBytes const& bytes, std::size_t offset)
{
    return bytes.begin() + static_cast<std::ptrdiff_t>(offset);
}

std::size_t find(FileBytes const& bytes, std::string_view text)
{
    auto const isSame = [](std::uint8_t byte, char sign) { return byte == std::uint8_t(sign); };
    return static_cast<std::size_t>(
        std::search(bytes.begin(), bytes.end(), text.begin(), text.end(), isSame) - bytes.begin());
}

// Files of one frame, taken apart and put together again: all frames would not fit into memory.
FileBytes gif()
{
    FileBytes file;
    std::vector<FileBytes> bodies;
    for (int i = 0; i < different; ++i) {
        GifFrame frame;
        frame.pixels = picture(i);
        frame.delay = static_cast<int>(delay.count() / 10);
        auto const one = writeGif(canvas, { frame }, { 0 });
        auto const body = find(one, std::string_view("\x21\xF9\x04", 3));
        if (i == 0)
            file.assign(one.begin(), at(one, body));
        bodies.emplace_back(at(one, body), one.end() - 1);
    }
    for (int i = 0; i < frames; ++i)
        file.insert(file.end(), bodies[std::size_t(i % different)].begin(),
            bodies[std::size_t(i % different)].end());
    file.push_back(0x3B);
    return file;
}

FileBytes webp()
{
    FileBytes file;
    std::vector<FileBytes> bodies;
    for (int i = 0; i < different; ++i) {
        WebpFrame frame;
        frame.pixels = picture(i);
        frame.delay = static_cast<int>(delay.count());
        WebpAnimationOptions options;
        options.isLossless = false;
        auto const one = writeWebpAnimation(canvas, { frame }, options);
        auto const body = find(one, "ANMF");
        if (i == 0)
            file.assign(one.begin(), at(one, body));
        bodies.emplace_back(at(one, body), one.end());
    }
    for (int i = 0; i < frames; ++i)
        file.insert(file.end(), bodies[std::size_t(i % different)].begin(),
            bodies[std::size_t(i % different)].end());
    return file;
}

std::uint32_t sumOf(FileBytes const& bytes, std::size_t from, std::size_t to)
{
    std::uint32_t sum = 0xFFFFFFFF;
    for (auto i = from; i < to; ++i) {
        sum ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit)
            sum = sum >> 1 ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
    }
    return ~sum;
}

void put32(FileBytes& bytes, std::size_t offset, std::uint32_t value)
{
    for (std::size_t i = 0; i < 4; ++i)
        bytes[offset + i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
}

// Gives the chunks of a frame, a control chunk and one of pixels, their numbers.
void number(FileBytes& body, std::uint32_t first)
{
    constexpr std::size_t controlBytes = 38;
    put32(body, 8, first);
    put32(body, controlBytes - 4, sumOf(body, 4, controlBytes - 4));
    put32(body, controlBytes + 8, first + 1);
    put32(body, body.size() - 4, sumOf(body, controlBytes + 4, body.size() - 4));
}

FileBytes png()
{
    FileBytes file;
    std::vector<FileBytes> bodies;
    for (int i = 0; i < different; ++i) {
        ApngFrame frame;
        frame.pixels = picture(i);
        frame.delay = static_cast<int>(delay.count());
        frame.parts = 1000;
        ApngOptions options;
        options.still = RgbaPixels::filled(canvas, 0xFF);
        options.frames = frames;
        auto const one = writeApng(canvas, { frame }, options);
        auto const body = find(one, "fcTL") - 4;
        if (i == 0)
            file.assign(one.begin(), at(one, body));
        bodies.emplace_back(at(one, body), one.end() - 12);
    }
    for (int i = 0; i < frames; ++i) {
        auto& body = bodies[std::size_t(i % different)];
        number(body, static_cast<std::uint32_t>(2 * i));
        file.insert(file.end(), body.begin(), body.end());
    }
    return file;
}

void write(std::filesystem::path const& path, FileBytes const& bytes)
{
    std::ofstream file(path, std::ios::binary);
    file.write(
        reinterpret_cast<char const*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    std::printf("%s %.1f MB\n", path.c_str(), double(bytes.size()) / 1e6);
}

// Kilobytes, each page shared out among those who have it.
long proportional(std::string const& process)
{
    std::ifstream file("/proc/" + process + "/smaps_rollup");
    for (std::string word; file >> word;) {
        long value = 0;
        if (word == "Pss:" && file >> value)
            return value;
    }
    return 0;
}

long memoryOfAll()
{
    auto const self = std::to_string(::getpid());
    auto sum = proportional(self);
    for (auto const& thread : std::filesystem::directory_iterator("/proc/" + self + "/task")) {
        std::ifstream file(thread.path() / "children");
        for (std::string child; file >> child;)
            sum += proportional(child);
    }
    return sum;
}

// Reads a frame as painting it does: only then its memory counts as this program's.
unsigned touched(Bitmap const& bitmap)
{
    unsigned sum = 0;
    for (std::size_t offset = 0; offset < bitmap.cost(); offset += 64)
        sum += static_cast<unsigned>(bitmap.pixels.get()[offset]);
    return sum;
}

int play(char const* path, double seconds)
{
    ConsoleLoop loop;
    ThreadPool background;
    auto const decoder = chosenDecoder({ .width = 5, .first = 2, .niceness = 2 });
    auto const now = [] {
        return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch());
    };
    std::vector<std::chrono::nanoseconds> shown;
    unsigned volatile sum = 0;
    std::unique_ptr<AnimatedImageView> view;
    view = std::make_unique<AnimatedImageView>(
        AnimatedImageView::House { *decoder, background, loop, now }, 1920, [&] {
            shown.push_back(now());
            sum = sum + touched(view->frame());
        });
    auto const begin = now();
    view->show(FileUrl(path));
    long most = 0;
    Task look;
    std::function<void()> const measure = [&] {
        most = std::max(most, memoryOfAll());
        look = loop.after(std::chrono::seconds(1), measure);
    };
    measure();
    auto const end = loop.after(std::chrono::milliseconds(long(seconds * 1000) + 1), [] {});
    loop.runUntil([&] { return Seconds(now() - begin).count() >= seconds; });
    if (shown.empty()) {
        std::printf("nothing was shown\n");
        return 1;
    }
    std::vector<double> late;
    for (std::size_t i = 0; i < shown.size(); ++i)
        late.push_back(Seconds(shown[i] - shown[0] - delay * int(i)).count() * 1000);
    auto const wanted = Seconds(now() - shown[0]) / Seconds(delay) + 1;
    auto const last = late.back();
    std::ranges::sort(late);
    std::printf("first frame after %.0f ms; %zu of %.0f frames; late: median %.1f ms, 99th %.1f, "
                "last %.1f; at most %.1f MB\n",
        Seconds(shown[0] - begin).count() * 1000, shown.size(), wanted, late[late.size() / 2],
        late[late.size() * 99 / 100], last, double(most) / 1024);
    return 0;
}

} // namespace

int main(int count, char** words)
{
    std::string_view const what = count > 1 ? words[1] : "";
    if (what == "make" && count == 3) {
        std::filesystem::path const folder(words[2]);
        write(folder / "animation.gif", gif());
        write(folder / "animation.png", png());
        write(folder / "animation.webp", webp());
        return 0;
    }
    if (what == "play" && count == 4)
        return play(words[2], std::atof(words[3]));
    std::fputs("usage: pixelhain-bench-animation make FOLDER | play FILE SECONDS\n", stderr);
    return 2;
}
