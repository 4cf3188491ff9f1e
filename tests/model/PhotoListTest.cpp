#include "model/PhotoList.h"
#include "support/FakeTextOrder.h"
#include <algorithm>
#include <doctest/doctest.h>
#include <memory>
#include <string>
#include <thread>

using namespace pixelhain;

namespace {

std::vector<PhotoItem> photos(int count)
{
    std::vector<PhotoItem> items;
    for (int i = 0; i < count; ++i)
        items.push_back({ FileUrl("/b/" + std::to_string(i) + ".jpg"), {}, count - i });
    return items;
}

} // namespace

TEST_CASE("a list tells what a choice lets through, in its order")
{
    FakeTextOrder const order;
    auto items = photos(30);
    PhotoIndex index(std::span<PhotoItem const>(items), order);
    PhotoList list(items, std::move(index));
    auto const visible = list.visible({ "2", SortKey::size, true }, order);
    REQUIRE(visible.size() == 12);
    CHECK(visible.front().name() == "29.jpg");
    CHECK(visible.back().name() == "2.jpg");
}

TEST_CASE("the first searches may come from several threads at once")
{
    FakeTextOrder const order;
    constexpr int count = 5000;
    auto items = photos(count);
    PhotoIndex index(std::span<PhotoItem const>(items), order);
    PhotoList list(items, std::move(index));
    std::vector<std::size_t> found(4);
    {
        std::vector<std::jthread> threads;
        for (auto& each : found)
            threads.emplace_back([&] {
                each = list.visible({ "99", SortKey::name, true }, order).size();
            });
    }
    CHECK(found.front() == 95);
    CHECK(std::ranges::count(found, found.front()) == 4);
}

TEST_CASE("a list knows whether a search still reads it")
{
    auto const list = std::make_shared<PhotoList>();
    CHECK_FALSE(list->isBeingRead());
    {
        PhotoList::Reading const reading(list);
        auto const second = reading;
        CHECK(list->isBeingRead());
        std::jthread([reading] { CHECK(reading->items().empty()); }).join();
        CHECK(list->isBeingRead());
    }
    CHECK_FALSE(list->isBeingRead());
}
