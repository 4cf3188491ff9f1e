#include "qt/app/HelpDocument.h"
#include "app/InlineText.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/Tones.h"
#include <QFontMetricsF>
#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>
#include <cmath>
#include <variant>

namespace pixelhain {

namespace {

using namespace helpMeasures;

constexpr int paragraphProperty = QTextFormat::UserProperty + 1;
constexpr int keyColumnProperty = QTextFormat::UserProperty + 2;

constexpr double largeTitleScale = 1.9; // of the body text
constexpr double titleScale = 1.18;
constexpr double lineScale = 1.08; // of a font's own line height
constexpr double titleGap = 10; // between symbol and title
constexpr double stepColumn = 34;
constexpr double bulletColumn = 18;
constexpr double bulletIndent = 5;
constexpr double keyGap = 18; // between key caps and actions
constexpr double keyRowGap = 8;
constexpr double keyTableGap = 14; // above and below a table
constexpr double tipGap = 12; // between symbol and hint

// Widths below which a topic is laid out for little room.
constexpr int narrowView = 440;
constexpr int leastActionLetters = 14;

// The first line begins at `start`, and what follows the tab in it at `column` like all lines.
void hang(QTextBlockFormat& format, double column, double start)
{
    format.setLeftMargin(column);
    format.setTextIndent(start - column);
    format.setTabPositions({ QTextOption::Tab(column - start, QTextOption::LeftTab) });
}

// What follows the tab begins a line of its own.
void stack(QTextBlockFormat& format, double start, double width)
{
    format.setLeftMargin(start);
    format.setTextIndent(0);
    format.setTabPositions({ QTextOption::Tab(width, QTextOption::LeftTab) });
}

class HelpWriter {
public:
    HelpWriter(QTextDocument& document, QFont const& font)
        : cursor_(&document)
        , font_(font)
        , calloutFont_(scaledFont(font, calloutScale))
    {
    }

    void title(std::string const& text)
    {
        auto format = paragraph(HelpParagraph::title, 0, 16);
        format.setLeftMargin(titleSymbolFrame + titleGap);
        format.setHeadingLevel(1);
        auto font = scaledFont(font_, largeTitleScale);
        font.setWeight(QFont::DemiBold);
        begin(format, font);
        plain(text, font);
    }

    void operator()(HelpHeading const& block)
    {
        auto format = paragraph(HelpParagraph::heading, 24, 8);
        format.setHeadingLevel(2);
        auto font = scaledFont(font_, titleScale);
        font.setWeight(QFont::DemiBold);
        begin(format, font);
        plain(block.text, font);
    }

    void operator()(HelpText const& block)
    {
        begin(paragraph(HelpParagraph::text, 9, 9), font_);
        marked(block.text);
    }

    void operator()(HelpTip const& block)
    {
        auto format = paragraph(HelpParagraph::tip, 14 + tipPadding, 14 + tipPadding);
        format.setLeftMargin(tipPadding + tipSymbol + tipGap);
        format.setRightMargin(tipPadding + 4);
        begin(format, font_);
        marked(block.text);
    }

    void operator()(HelpSteps const& block)
    {
        auto font = calloutFont_;
        font.setWeight(QFont::Bold);
        auto format = paragraph(HelpParagraph::step, 11, 11);
        for (std::size_t i = 0; i < block.items.size(); ++i) {
            auto const number = QString::number(i + 1);
            auto const width = QFontMetricsF(font).horizontalAdvance(number);
            hang(format, stepColumn, (circle - width) / 2);
            begin(format, font_);
            leader(number, font, Qt::white);
            marked(block.items[i]);
        }
    }

    void operator()(HelpBullets const& block)
    {
        auto format = paragraph(HelpParagraph::bullet, 6, 6);
        hang(format, bulletColumn, bulletIndent);
        for (auto const& item : block.items) {
            begin(format, font_);
            leader(QStringLiteral("•"), font_, {});
            marked(item);
        }
    }

    void operator()(HelpKeys const& block)
    {
        auto const font = capFont();
        auto format = paragraph(HelpParagraph::keys, keyRowGap, keyRowGap);
        format.setProperty(keyColumnProperty, keyColumn_);
        hang(format, keyColumn_, capPaddingX);
        for (auto const& row : block.rows) {
            format.setTopMargin(&row == &block.rows.front() ? keyTableGap : keyRowGap);
            format.setBottomMargin(&row == &block.rows.back() ? keyTableGap : keyRowGap);
            begin(format, font_);
            passages_.push_back({ cursor_.position(), row.keys });
            leader(shownText(row.keys), font, {});
            marked(row.action);
        }
    }

    // One width for all tables of a topic.
    void measureKeys(HelpTopic const& topic)
    {
        QFontMetricsF const metrics(capFont());
        double widest = 0;
        for (auto const& block : topic.blocks)
            if (auto const* const keys = std::get_if<HelpKeys>(&block))
                for (auto const& row : keys->rows)
                    widest = std::max(widest, metrics.horizontalAdvance(shownText(row.keys)));
        keyColumn_ = std::ceil(widest) + 2 * capPaddingX + keyGap;
    }

    std::vector<HelpPassage> take() { return std::move(passages_); }

private:
    QFont capFont() const
    {
        auto font = calloutFont_;
        font.setWeight(QFont::Medium);
        return font;
    }

    static QTextBlockFormat paragraph(HelpParagraph kind, double above, double below)
    {
        QTextBlockFormat format;
        format.setProperty(paragraphProperty, static_cast<int>(kind));
        format.setTopMargin(above);
        format.setBottomMargin(below);
        return format;
    }

    void begin(QTextBlockFormat format, QFont const& font)
    {
        // Signs of other fonts, such as those of keys, must not push lines apart.
        format.setLineHeight(
            std::round(QFontMetricsF(font).height() * lineScale), QTextBlockFormat::FixedHeight);
        QTextCharFormat letters;
        letters.setFont(font);
        if (std::exchange(isEmpty_, false)) {
            cursor_.setBlockFormat(format);
            cursor_.setBlockCharFormat(letters);
        } else {
            cursor_.insertBlock(format, letters);
        }
    }

    void leader(QString const& text, QFont const& font, QColor const& color)
    {
        QTextCharFormat format;
        format.setFont(font);
        if (color.isValid())
            format.setForeground(color);
        cursor_.insertText(text, format);
        QTextCharFormat tab;
        tab.setFont(font_);
        cursor_.insertText(QStringLiteral("\t"), tab);
    }

    void plain(std::string const& text, QFont const& font)
    {
        passages_.push_back({ cursor_.position(), text });
        QTextCharFormat format;
        format.setFont(font);
        cursor_.insertText(shownText(text), format);
    }

    void marked(std::string const& text)
    {
        auto const [read, spans] = inlineText(text);
        passages_.push_back({ cursor_.position(), read });
        std::string_view const whole = read;
        std::size_t at = 0;
        for (auto const& span : spans) {
            insert(whole.substr(at, span.begin - at), {});
            insert(whole.substr(span.begin, span.end - span.begin), span);
            at = span.end;
        }
        insert(whole.substr(at), {});
    }

    void insert(std::string_view text, InlineText::Span const& style)
    {
        auto font = font_;
        if (style.isBold)
            font.setWeight(QFont::Bold);
        font.setItalic(style.isItalic);
        if (style.isCode)
            font.setFamilies({ QStringLiteral("monospace") });
        QTextCharFormat format;
        format.setFont(font);
        cursor_.insertText(shownText(text), format);
    }

    QTextCursor cursor_;
    QFont font_;
    QFont calloutFont_;
    double keyColumn_ = 0;
    bool isEmpty_ = true;
    std::vector<HelpPassage> passages_;
};

} // namespace

HelpParagraph helpParagraph(QTextBlock const& block)
{
    return static_cast<HelpParagraph>(block.blockFormat().intProperty(paragraphProperty));
}

int leaderLength(QTextBlock const& block)
{
    switch (helpParagraph(block)) {
    case HelpParagraph::step:
    case HelpParagraph::bullet:
    case HelpParagraph::keys:
        return std::max(0, static_cast<int>(block.text().indexOf(QLatin1Char('\t'))));
    default:
        return 0;
    }
}

std::vector<HelpPassage> writeHelpTopic(
    QTextDocument& document, HelpTopic const& topic, QFont const& font)
{
    document.clear();
    document.setDefaultFont(font);
    HelpWriter writer(document, font);
    writer.measureKeys(topic);
    QTextCursor whole(&document);
    whole.beginEditBlock(); // laid out once, not after every string
    writer.title(topic.title);
    for (auto const& block : topic.blocks)
        std::visit(writer, block);
    whole.endEditBlock();
    return writer.take();
}

void fitHelpTopic(QTextDocument& document, int viewWidth)
{
    auto const sides = viewWidth < narrowView ? narrowMargin : margin;
    if (document.documentMargin() != sides)
        document.setDocumentMargin(sides);
    auto const width = std::min(viewWidth - 2 * sides, textWidth);
    auto const letters = QFontMetricsF(document.defaultFont()).averageCharWidth();
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    for (auto block = document.begin(); block.isValid(); block = block.next()) {
        if (helpParagraph(block) != HelpParagraph::keys)
            continue;
        auto format = block.blockFormat();
        auto const column = format.doubleProperty(keyColumnProperty);
        if (width - column < leastActionLetters * letters)
            stack(format, capPaddingX, width);
        else
            hang(format, column, capPaddingX);
        if (format == block.blockFormat())
            continue;
        cursor.setPosition(block.position());
        cursor.setBlockFormat(format);
    }
    cursor.endEditBlock();
}

QString copiedHelpText(QTextCursor const& selection)
{
    QString copied;
    auto const* const document = selection.document();
    auto last = HelpParagraph::text;
    auto const end = selection.selectionEnd();
    for (auto block = document->findBlock(selection.selectionStart());
         block.isValid() && block.position() < end; block = block.next()) {
        auto const from = std::max(0, selection.selectionStart() - block.position());
        auto text = block.text().mid(from, end - block.position() - from);
        auto const kind = helpParagraph(block);
        auto const tab = from == 0 ? text.indexOf(QLatin1Char('\t')) : -1;
        if (tab >= 0 && kind == HelpParagraph::step)
            text.replace(tab, 1, QStringLiteral(". "));
        else if (tab >= 0 && kind == HelpParagraph::bullet)
            text.replace(tab, 1, QStringLiteral(" "));
        bool const belongs = kind == last && kind != HelpParagraph::text;
        if (!copied.isEmpty())
            copied += belongs ? QStringLiteral("\n") : QStringLiteral("\n\n");
        copied += text;
        last = kind;
    }
    return copied;
}

} // namespace pixelhain
