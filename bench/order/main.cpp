// Ordering and filtering a folder's photos by name, beside comparing names pair by pair.
#include "icu/IcuTextOrder.h"
#include "model/PhotoIndex.h"
#include "model/PhotoOrder.h"
#include <algorithm>
#include <benchmark/benchmark.h>
#include <random>
#include <string>
#include <vector>

using namespace pixelhain;

namespace {

// Four series as cameras and people write them, in no order.
std::vector<PhotoItem> photos(std::size_t count)
{
    std::mt19937 random(1);
    FileUrl const folder("/home/user/Bilder/Urlaub");
    std::vector<PhotoItem> items;
    for (std::size_t i = 0; i < count; ++i) {
        auto const number = std::to_string(i);
        std::string const names[] = { "IMG_" + number + ".jpg", "DSC" + number + ".JPG",
            "Ausflug nach K\xC3\xB6ln (" + number + ").jpeg", "2026-07-14 " + number + ".jpg" };
        items.push_back(
            { folder.child(names[i % 4]), Timestamp(std::chrono::seconds(random() % 100'000)),
                static_cast<std::int64_t>(random() % 10'000'000) });
    }
    std::ranges::shuffle(items, random);
    return items;
}

IcuTextOrder const german("de_DE");

void sortKeys(benchmark::State& state)
{
    auto const items = photos(static_cast<std::size_t>(state.range(0)));
    std::size_t bytes = 0;
    for (auto _ : state) {
        std::string keys;
        for (auto const& item : items)
            german.appendSortKey(item.name(), keys);
        bytes = keys.size();
    }
    state.counters["bytes/name"] = static_cast<double>(bytes) / static_cast<double>(items.size());
}

void rankNames(benchmark::State& state)
{
    auto const items = photos(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(PhotoIndex(items, german).size());
}

void comparePairs(benchmark::State& state)
{
    auto const items = photos(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        auto sorted = items;
        std::ranges::sort(sorted, [](auto const& a, auto const& b) {
            return photoOrder(a, b, SortKey::name, true, german);
        });
        benchmark::DoNotOptimize(sorted.data());
    }
}

void visible(benchmark::State& state, char const* text, SortKey key)
{
    auto const items = photos(static_cast<std::size_t>(state.range(0)));
    PhotoIndex index(items, german);
    static_cast<void>(index.visible(items, german, text, key, true));
    for (auto _ : state)
        benchmark::DoNotOptimize(index.visible(items, german, text, key, true).size());
}

void foldNames(benchmark::State& state)
{
    auto const items = photos(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
        for (auto const& item : items)
            benchmark::DoNotOptimize(german.folded(item.name()));
}

auto const milliseconds = benchmark::kMillisecond;

} // namespace

BENCHMARK(sortKeys)->Arg(100'000)->Arg(1'000'000)->Unit(milliseconds);
BENCHMARK(rankNames)->Arg(100'000)->Arg(1'000'000)->Unit(milliseconds);
BENCHMARK(comparePairs)->Arg(100'000)->Unit(milliseconds);
BENCHMARK(foldNames)->Arg(100'000)->Arg(1'000'000)->Unit(milliseconds);
BENCHMARK_CAPTURE(visible, byName, "", SortKey::name)->Arg(100'000)->Unit(milliseconds);
BENCHMARK_CAPTURE(visible, byDate, "", SortKey::date)->Arg(100'000)->Unit(milliseconds);
BENCHMARK_CAPTURE(visible, search, "img_12", SortKey::name)->Arg(100'000)->Unit(milliseconds);

BENCHMARK_MAIN();
