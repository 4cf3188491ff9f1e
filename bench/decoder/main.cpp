// Decoding in other processes beside decoding in this one, by turns in one run: only ratios and
// differences of neighbours mean something.
//
// pixelhain-bench-decoder ROUNDS SMALL LARGE…
//   SMALL  a photo with an embedded preview, for single requests
//   LARGE  photos for the throughput
#include "decoder/DecoderProgram.h"
#include "decoder/InProcessDecoder.h"
#include "decoder/PooledDecoder.h"
#include "support/Children.h"
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

namespace pixelhain {

namespace {

using Clock = std::chrono::steady_clock;

template <typename Work> double secondsOf(Work work)
{
    auto const start = Clock::now();
    work();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double median(std::vector<double> values)
{
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

WorkerPool::Options options(std::size_t width)
{
    WorkerPool::Options options;
    options.program = decoderProgram();
    options.width = width;
    options.rate = RestartRate(std::chrono::milliseconds(1), std::chrono::milliseconds(1));
    options.complain = [](std::string const& reason) {
        std::fprintf(stderr, "%s\n", reason.c_str());
        std::exit(1);
    };
    return options;
}

void mustShow(ImageDecoder& decoder, DecodeRequest const& request)
{
    if (decoder.decode(request))
        return;
    std::fprintf(stderr, "cannot decode %s\n", request.file.cString());
    std::exit(1);
}

double timeForAll(
    ImageDecoder& decoder, std::vector<FileUrl> const& files, int maxPixel, std::size_t threads)
{
    return secondsOf([&] {
        std::atomic<std::size_t> next = 0;
        std::vector<std::jthread> running;
        for (std::size_t i = 0; i < threads; ++i)
            running.emplace_back([&] {
                for (auto at = next++; at < files.size(); at = next++)
                    mustShow(decoder, { files[at], maxPixel, EmbeddedPreviews::ignore });
            });
    });
}

// How much the first side does in the time of the second.
template <typename First, typename Second>
void compare(char const* name, int rounds, First first, Second second)
{
    std::vector<double> ratios;
    for (int i = 0; i < rounds; ++i) {
        auto const leads = i % 2 == 0;
        auto const before = leads ? first() : second();
        auto const after = leads ? second() : first();
        ratios.push_back(leads ? after / before : before / after);
    }
    std::printf("%-58s %8.3f\n", name, median(ratios));
}

void throughput(std::vector<FileUrl> const& files, int rounds)
{
    InProcessDecoder here;
    PooledDecoder pooled(options(3));
    for (int const maxPixel : { 384, 2880 }) {
        // Not counted: processes start, caches fill.
        timeForAll(pooled, files, maxPixel, 3);
        timeForAll(here, files, maxPixel, 3);
        auto const pool
            = [&](std::size_t threads) { return timeForAll(pooled, files, maxPixel, threads); };
        auto const name = std::to_string(maxPixel) + " px, 2 side by side: ";
        compare((name + "processes / in process").c_str(), rounds, [&] { return pool(2); },
            [&] { return timeForAll(here, files, maxPixel, 2); });
        compare((name + "3 requests under way / 2").c_str(), rounds, [&] { return pool(3); },
            [&] { return pool(2); });
    }
}

void singleRequests(FileUrl const& file, int rounds)
{
    InProcessDecoder here;
    PooledDecoder pooled(options(2));
    auto const difference = [&](char const* name, auto work) {
        work(pooled);
        work(here);
        std::vector<double> more;
        std::vector<double> alone;
        for (int i = 0; i < rounds * 100; ++i) {
            auto const there = secondsOf([&] { work(pooled); });
            alone.push_back(secondsOf([&] { work(here); }));
            more.push_back(there - alone.back());
        }
        std::printf("%-58s %8.1f  (of %.1f)\n", name, median(more) * 1e6, median(alone) * 1e6);
    };
    difference("embedded thumbnail of 160 px: more in a process, us", [&](ImageDecoder& decoder) {
        mustShow(decoder, { file, 128, EmbeddedPreviews::prefer });
    });
    difference("metadata: more in a process, us", [&](ImageDecoder& decoder) {
        if (!decoder.readMeta(file))
            std::exit(1);
    });
}

// Killed processes go when the kernel comes to it; until then they may still take a request, and
// the file would be blamed for their death.
void kill(std::vector<pid_t> const& processes)
{
    for (auto const process : processes)
        ::kill(process, SIGKILL);
    while (endedOf(processes) < static_cast<int>(processes.size()))
        std::this_thread::yield();
}

// From the death of every process but the spare, or of all, to the next picture.
void recovery(FileUrl const& file, int rounds)
{
    PooledDecoder pooled(options(1));
    auto const show = [&] { mustShow(pooled, { file, 128, EmbeddedPreviews::prefer }); };
    std::vector<double> spare;
    std::vector<double> none;
    for (int i = 0; i < rounds * 10; ++i) {
        show();
        while (children().size() < 2)
            std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::milliseconds(50)); // until the spare is ready
        auto const usual = secondsOf(show);
        auto const all = children();
        bool const isAll = i % 2 == 1;
        kill(isAll ? all : std::vector { *std::ranges::min_element(all) });
        (isAll ? none : spare).push_back(secondsOf(show) - usual);
    }
    std::printf("%-58s %8.2f\n", "after a crash, with a spare: more, ms", median(spare) * 1e3);
    std::printf("%-58s %8.2f\n", "after a crash, without: more, ms", median(none) * 1e3);
}

double privateKilobytes(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/smaps_rollup");
    double sum = 0;
    for (std::string word; file >> word;) {
        double value = 0;
        if (word.starts_with("Private_") && file >> value)
            sum += value;
    }
    return sum;
}

// Only root may look at a process that cannot be dumped.
void memory(std::vector<FileUrl> const& files)
{
    PooledDecoder pooled(options(1));
    auto const print = [](char const* name) {
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        for (auto const process : children())
            std::printf("%-58s %8.2f\n", name, privateKilobytes(process) / 1024);
    };
    pooled.prepare(1);
    print("private memory of a worker at the start, MB");
    mustShow(pooled, { files[0], 384, EmbeddedPreviews::ignore });
    print("private memory after a picture, and of the spare, MB");
    std::this_thread::sleep_for(std::chrono::seconds(3));
    print("the same after some idle time, MB");
}

} // namespace

} // namespace pixelhain

int main(int count, char** words)
{
    using namespace pixelhain;
    if (count < 4) {
        std::fputs("Usage: pixelhain-bench-decoder ROUNDS SMALL LARGE…\n", stderr);
        return 2;
    }
    setlinebuf(stdout);
    int const rounds = std::max(1, std::atoi(words[1]));
    FileUrl const small(words[2]);
    std::vector<FileUrl> const large(words + 3, words + count);
    singleRequests(small, rounds);
    recovery(small, rounds);
    memory(large);
    throughput(large, rounds);
}
