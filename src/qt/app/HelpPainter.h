#pragma once
#include "app/HelpSearch.h"
#include "qt/app/HelpDocument.h"
#include "qt/window/Tones.h"
#include <QPainter>
#include <QPalette>
#include <string>
#include <vector>

class QTextDocument;
class QTextLine;

namespace pixelhain {

/// Letters of a shown topic, counted from the start of the document.
struct HelpRange {
    int begin = 0;
    int end = 0;

    bool operator==(HelpRange const&) const = default;
};

/// Draws what belongs to a shown topic besides its letters: its symbol, key caps, numbers' circles,
/// the boxes of hints and the ground of what was searched for. Edges are on whole device pixels.
class HelpPainter {
public:
    /// `document` as `writeHelpTopic` leaves it.
    HelpPainter(QTextDocument const& document, QPalette const& palette, double scale);

    // The painter stands at the document's origin; what touches `area` is drawn.

    void drawBelow(QPainter& painter, QRectF const& area, std::string const& symbol,
        std::vector<HelpRange> const& matches) const;

    /// The edges of key caps, which a selection must not hide.
    void drawAbove(QPainter& painter, QRectF const& area) const;

    /// Where letters `begin` to `end` of one paragraph are, one rectangle for each line.
    [[nodiscard]] static std::vector<QRectF> rectangles(
        QTextBlock const& block, int begin, int end);

private:
    template <typename Draw>
    void forBlocks(QPainter& painter, QRectF const& area, Draw const& draw) const;
    void drawSymbol(QPainter& painter, std::string_view name, QRectF const& frame, double edge,
        QColor const& color) const;
    void drawTitle(QPainter& painter, QTextBlock const& block, std::string const& symbol) const;
    void drawCircle(QPainter& painter, QTextBlock const& block) const;
    void drawCap(
        QPainter& painter, QTextBlock const& block, QColor const& fill, QColor const& line) const;
    void drawTip(QPainter& painter, QTextBlock const& block) const;
    void drawMatches(
        QPainter& painter, QTextBlock const& block, std::vector<HelpRange> const& matches) const;
    void drawBox(QPainter& painter, QRectF const& box, double corner, QColor const& fill,
        QColor const& line) const;
    QRectF snapped(QRectF const& rectangle) const;
    bool isDark() const;

    QTextDocument const& document_;
    Tones tones_;
    QPalette palette_;
    double scale_;
};

} // namespace pixelhain
