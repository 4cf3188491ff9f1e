#include "base/SharedBytes.h"
#include <cstring>
#include <doctest/doctest.h>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

using namespace pixelhain;

TEST_CASE("shared bytes live as long as one of their owners")
{
    SharedBytes outer;
    CHECK(outer.data() == nullptr);
    CHECK(outer.owners() == 0);
    {
        SharedBytes const inner(4);
        std::memcpy(inner.data(), "abc", 4);
        outer = inner;
        CHECK(outer.owners() == 2);
        CHECK(outer.data() == inner.data());
    }
    CHECK(outer.owners() == 1);
    CHECK(std::string_view(outer.data()) == "abc");
}

TEST_CASE("shared bytes that are moved have one owner still")
{
    SharedBytes one(1);
    SharedBytes const other(std::move(one));
    CHECK(other.owners() == 1);
}

TEST_CASE("shared bytes assigned to themselves stay")
{
    SharedBytes bytes(1);
    auto const& same = bytes;
    bytes = same;
    CHECK(bytes.owners() == 1);
    CHECK(bytes.data() != nullptr);
}

TEST_CASE("shared bytes are owned by many threads at once")
{
    SharedBytes const bytes(1);
    *bytes.data() = 'x';
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([bytes] {
                std::vector<SharedBytes> const copies(1000, bytes);
                for (auto const& copy : copies)
                    REQUIRE(*copy.data() == 'x');
            });
    }
    CHECK(bytes.owners() == 1);
}
