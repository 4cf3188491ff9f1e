#include "contactsheet/ContactSheetLayout.h"
#include "support/ForkedRun.h"
#include <csignal>
#include <doctest/doctest.h>
#include <limits>

using namespace pixelhain;

namespace {

// To the last hundredth, and well beyond.
constexpr double exactly = 1e-9;

doctest::Approx near(double value)
{
    return doctest::Approx(value).epsilon(exactly);
}

ContactSheetLayout layoutOf(ContactSheetOptions const& options, std::size_t photos)
{
    return { options, photos, options.page() };
}

void checkRect(PageRect const& rect, PageRect const& wanted)
{
    CHECK(rect.x == near(wanted.x));
    CHECK(rect.y == near(wanted.y));
    CHECK(rect.width == near(wanted.width));
    CHECK(rect.height == near(wanted.height));
}

} // namespace

TEST_CASE("an upright A4 page of 5 columns with names holds 30 photos")
{
    auto const layout = layoutOf({}, 42);
    CHECK(layout.page == PageSize { 595.28, 841.89 });
    CHECK(layout.cell == near(96.656));
    CHECK(layout.pitch == near(119.656));
    CHECK(layout.rows == 6);
    CHECK(layout.perPage == 30);
    CHECK(layout.pages == 2);
    CHECK(layout.thumbnailPixels == 289);
}

TEST_CASE("every paper has its size, turned for landscape before anything else")
{
    ContactSheetOptions options;
    options.paper = PaperSize::a3;
    CHECK(options.page() == PageSize { 841.89, 1190.55 });
    options.paper = PaperSize::letter;
    CHECK(options.page() == PageSize { 612, 792 });
    options.landscape = true;
    CHECK(options.page() == PageSize { 792, 612 });

    options.paper = PaperSize::a4;
    auto const layout = layoutOf(options, 1);
    CHECK(layout.page == PageSize { 841.89, 595.28 });
    CHECK(layout.cell == near(145.978));
    CHECK(layout.pitch == near(168.978));
    CHECK(layout.rows == 2);
    CHECK(layout.thumbnailPixels == 437);
}

TEST_CASE("papers are known by their raw values and titles, in the order they are offered")
{
    CHECK(paperSizes == std::array { PaperSize::a4, PaperSize::a3, PaperSize::letter });
    CHECK(rawValue(PaperSize::a4) == "a4");
    CHECK(rawValue(PaperSize::a3) == "a3");
    CHECK(rawValue(PaperSize::letter) == "letter");
    CHECK(titleOf(PaperSize::a4) == "A4");
    CHECK(titleOf(PaperSize::a3) == "A3");
    CHECK(titleOf(PaperSize::letter) == "US Letter");
    CHECK(paperSizeFromRawValue("letter") == PaperSize::letter);
    CHECK_FALSE(paperSizeFromRawValue("A4").has_value());
}

TEST_CASE("a full page is one page, and one photo more begins another")
{
    CHECK(layoutOf({}, 0).pages == 1);
    CHECK(layoutOf({}, 1).pages == 1);
    CHECK(layoutOf({}, 30).pages == 1);
    CHECK(layoutOf({}, 31).pages == 2);
    CHECK(layoutOf({}, 60).pages == 2);
    CHECK(layoutOf({}, 61).pages == 3);
}

TEST_CASE("without names rows move together")
{
    ContactSheetOptions options;
    options.showNames = false;
    auto const layout = layoutOf(options, 1);
    CHECK(layout.labelHeight == 0);
    CHECK(layout.pitch == near(106.656));
    CHECK(layout.rows == 6);
    options.columns = 10;
    CHECK(layoutOf(options, 1).cell == near(43.328));
    CHECK(layoutOf(options, 1).rows == 13);
}

TEST_CASE("fewer than two columns are one, whose row fills the width")
{
    for (int const columns : { 1, 0, -3 }) {
        ContactSheetOptions options;
        options.columns = columns;
        auto const layout = layoutOf(options, 3);
        CHECK(layout.columns == 1);
        CHECK(layout.cell == near(523.28));
        CHECK(layout.rows == 1);
        CHECK(layout.pages == 3);
    }
}

TEST_CASE("a page that is too low for a row still gets one")
{
    ContactSheetOptions options;
    options.columns = 2;
    ContactSheetLayout const layout(options, 5, { 800, 200 });
    CHECK(layout.rows == 1);
    CHECK(layout.perPage == 2);
    CHECK(layout.pages == 3);
}

TEST_CASE("rows that cannot be counted stop the program")
{
    auto const ending = runForked([] {
        std::signal(SIGABRT, SIG_DFL); // not the tests' own handler
        constexpr auto endless = std::numeric_limits<double>::infinity();
        ContactSheetLayout const layout({}, 1, { 600, endless });
        return static_cast<int>(layout.rows);
    });
    CHECK(ending.signal == SIGABRT);
}

TEST_CASE("texts and rule of the header stand below the top margin")
{
    auto const layout = layoutOf({}, 42);
    CHECK(layout.titleAt().x == 36);
    CHECK(layout.titleAt().y == near(790.89));
    CHECK(layout.infoAt(160).x == near(399.28));
    CHECK(layout.infoAt(160).y == near(792.89));
    CHECK(layout.titleWidth(160) == near(351.28));
    CHECK(layout.ruleBegin().x == 36);
    CHECK(layout.ruleEnd().x == near(559.28));
    CHECK(layout.ruleBegin().y == near(783.89));
    CHECK(layout.ruleEnd().y == near(783.89));
}

TEST_CASE("cells run from left to right and from the top down")
{
    auto const layout = layoutOf({}, 42);
    checkRect(layout.cellRect(0), { 36, 675.234, 96.656, 96.656 });
    checkRect(layout.cellRect(4), { 462.624, 675.234, 96.656, 96.656 });
    checkRect(layout.cellRect(5), { 36, 555.578, 96.656, 96.656 });
    checkRect(layout.cellRect(29), { 462.624, 76.954, 96.656, 96.656 });
}

TEST_CASE("a name stands below its cell")
{
    checkRect(
        ContactSheetLayout::labelBox({ 36, 675.234, 96.656, 96.656 }), { 36, 662.234, 96.656, 12 });
}

TEST_CASE("a picture goes into the middle of its cell, as large as it fits, small ones too")
{
    PageRect const cell { 100, 200, 104, 104 };
    checkRect(ContactSheetLayout::pictureRect(cell, { 300, 200 }),
        { 102, 218.666666666667, 100, 66.6666666666667 });
    checkRect(ContactSheetLayout::pictureRect(cell, { 200, 300 }),
        { 118.666666666667, 202, 66.6666666666667, 100 });
    checkRect(ContactSheetLayout::pictureRect(cell, { 1, 1 }), { 102, 202, 100, 100 });
    checkRect(ContactSheetLayout::pictureRect(cell, { 1000, 1 }), { 102, 251.95, 100, 0.1 });
}

TEST_CASE("names are printed smaller from 8 columns on")
{
    ContactSheetOptions options;
    options.columns = 7;
    CHECK(layoutOf(options, 1).labelStyle.size == 7);
    options.columns = 8;
    CHECK(layoutOf(options, 1).labelStyle.size == 5.5);
}

TEST_CASE("a sheet without a title is called Kontaktabzug")
{
    CHECK(contactSheetTitle({}) == "Kontaktabzug");
    ContactSheetOptions options;
    options.title = "Urlaub";
    CHECK(contactSheetTitle(options) == "Urlaub");
}

TEST_CASE("the info line has two blanks on each side of its dots")
{
    CHECK(contactSheetInfo(42, "16.11.2026", 1, 2) == "42 Fotos  ·  16.11.2026  ·  Seite 1/2");
}
