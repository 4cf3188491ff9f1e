#include "window/ToolbarPlan.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

// 3 items: 60 each with labels, 20 without; 100 that always stay.
ToolbarWidths widths()
{
    return { { 60, 60, 60 }, { 20, 20, 20 }, 5, 100, 80, 40, 20 };
}

} // namespace

TEST_CASE("with room for all a toolbar shows the labels")
{
    CHECK(toolbarPlan(1000, widths()) == ToolbarPlan { true, 3, 80 });
    CHECK(toolbarPlan(100 + 190 + 80, widths()) == ToolbarPlan { true, 3, 80 });
}

TEST_CASE("labels give way first and all together")
{
    CHECK(toolbarPlan(100 + 190 + 79, widths()) == ToolbarPlan { false, 3, 80 });
}

TEST_CASE("then the search field shrinks to its least width")
{
    CHECK(toolbarPlan(100 + 70 + 60, widths()) == ToolbarPlan { false, 3, 60 });
    CHECK(toolbarPlan(100 + 70 + 40, widths()) == ToolbarPlan { false, 3, 40 });
}

TEST_CASE("then items go from the right, behind a button that takes its own room")
{
    CHECK(toolbarPlan(100 + 70 + 39, widths()) == ToolbarPlan { false, 2, 44 });
    CHECK(toolbarPlan(100 + 45 + 20 + 39, widths()) == ToolbarPlan { false, 1, 64 });
}

TEST_CASE("the first item and the search field stay whatever the width")
{
    CHECK(toolbarPlan(0, widths()) == ToolbarPlan { false, 1, 40 });
}
