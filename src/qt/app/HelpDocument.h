#pragma once
#include "app/HelpTopic.h"
#include <QFont>
#include <QTextBlock>
#include <string>
#include <vector>

class QTextCursor;
class QTextDocument;

namespace pixelhain {

/// What a paragraph of a shown topic is.
enum class HelpParagraph { title, heading, text, step, bullet, keys, tip };
[[nodiscard]] HelpParagraph helpParagraph(QTextBlock const& block);

/// How many letters at the start of a step, bullet or row of keys stand in its left column; 0 for
/// the other paragraphs.
[[nodiscard]] int leaderLength(QTextBlock const& block);

/// A string of the topic as it stands in the document, without its marks.
struct HelpPassage {
    int position = 0; ///< of its first letter in the document
    std::string text;
};

/// Measures of a shown topic, in points.
namespace helpMeasures {
inline constexpr double margin = 28;
inline constexpr double narrowMargin = 16;
inline constexpr double textWidth = 640; ///< at most: longer lines are hard to read
inline constexpr double titleSymbol = 26;
inline constexpr double titleSymbolFrame = 34;
inline constexpr double circle = 22;
inline constexpr double capPaddingX = 8;
inline constexpr double capPaddingY = 2;
inline constexpr double tipPadding = 12;
inline constexpr double tipSymbol = 20;
} // namespace helpMeasures

/// Writes the topic into the document: one paragraph for each string, all of them plain text that
/// can be selected and read aloud. What letters cannot show (circles, key caps, boxes) is left to
/// a painter. Returns where the topic's strings are.
std::vector<HelpPassage> writeHelpTopic(
    QTextDocument& document, HelpTopic const& topic, QFont const& font);

/// Lays the document out for a view of this width: narrower margins where there is little room, and
/// actions below their keys where the column beside them would be too narrow to read.
void fitHelpTopic(QTextDocument& document, int viewWidth);

/// What is selected, as plain text: "1. …" for a step, a tab between keys and action, an empty line
/// between paragraphs that do not belong together.
[[nodiscard]] QString copiedHelpText(QTextCursor const& selection);

} // namespace pixelhain
