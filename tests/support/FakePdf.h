#pragma once
#include "ports/PdfWriter.h"
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pixelhain {

/// Remembers what is drawn. Every letter is half as wide as its font is high.
class FakePdf final : public PdfWriter {
public:
    struct Text {
        std::string text;
        PdfTextStyle style;
        PagePoint at; ///< of a label: the lower left corner of its box
        double width = 0;
    };
    struct Page {
        std::vector<Text> texts;
        std::vector<Text> labels;
        std::vector<PageRect> fills;
        std::vector<PageRect> pictures;
        std::vector<PageRect> lines; ///< from corner to corner
    };
    struct Written {
        Document document;
        std::vector<Page> pages { {} }; ///< the last one is not ended
        bool isFinished = false;
        bool isDropped = false;
    };

    std::variant<std::unique_ptr<PdfCanvas>, WriteProblem> begin(Document const& document) override
    {
        if (cannotBegin)
            return *cannotBegin;
        written.push_back(std::make_unique<Written>());
        written.back()->document = document;
        return std::make_unique<Canvas>(*this, *written.back());
    }
    PdfPicture pictureOf(Bitmap const& bitmap, WhiteLevel) override
    {
        return { bitmap.size, std::make_shared<std::vector<std::uint8_t> const>(1) };
    }

    std::optional<WriteProblem> cannotBegin;
    std::optional<WriteProblem> cannotFinish;
    std::size_t pagesUntilFull = 1000;
    std::function<void()> whenPageEnds;
    std::vector<std::unique_ptr<Written>> written;

private:
    class Canvas final : public PdfCanvas {
    public:
        Canvas(FakePdf& pdf, Written& to)
            : pdf_(pdf)
            , to_(to)
        {
        }
        ~Canvas() override { to_.isDropped = !to_.isFinished; }

        double textWidth(std::string_view text, PdfTextStyle const& style) override
        {
            return style.size / 2 * static_cast<double>(text.size());
        }
        void drawText(
            std::string_view text, PdfTextStyle const& style, PagePoint at, double width) override
        {
            page().texts.push_back({ std::string(text), style, at, width });
        }
        void drawLabel(
            std::string_view text, PdfTextStyle const& style, PageRect const& box) override
        {
            page().labels.push_back({ std::string(text), style, { box.x, box.y }, box.width });
        }
        void fill(PageRect const& rect, WhiteLevel) override { page().fills.push_back(rect); }
        void drawLine(PagePoint from, PagePoint to, double, WhiteLevel) override
        {
            page().lines.push_back({ from.x, from.y, to.x - from.x, to.y - from.y });
        }
        void drawPicture(PdfPicture const&, PageRect const& rect) override
        {
            page().pictures.push_back(rect);
        }
        bool endPage() override
        {
            if (to_.pages.size() > pdf_.pagesUntilFull)
                return false;
            to_.pages.emplace_back();
            if (pdf_.whenPageEnds)
                pdf_.whenPageEnds();
            return true;
        }
        std::optional<WriteProblem> finish() override
        {
            if (pdf_.cannotFinish || to_.pages.size() > pdf_.pagesUntilFull)
                return pdf_.cannotFinish.value_or(WriteProblem::noSpace);
            to_.isFinished = true;
            return std::nullopt;
        }

    private:
        Page& page() { return to_.pages.back(); }

        FakePdf& pdf_;
        Written& to_;
    };
};

} // namespace pixelhain
