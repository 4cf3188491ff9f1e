#include "app/InlineText.h"
#include "app/InlineCharacters.h"
#include <algorithm>

namespace pixelhain {

namespace {

// A stretch of text that has one style, or a run of marks that may turn out to be text.
struct Piece {
    std::string text;
    bool isBold = false;
    bool isItalic = false;
    bool isCode = false;
};

struct Delimiters {
    std::size_t piece = 0; ///< which holds those marks that are left
    char mark = 0;
    std::size_t written = 0; ///< how many marks there were
    bool opens = false;
    bool closes = false;
    bool isDone = false;
};

bool haveSameStyle(InlineText::Span const& a, InlineText::Span const& b)
{
    return a.isBold == b.isBold && a.isItalic == b.isItalic && a.isCode == b.isCode;
}

class InlineParser {
public:
    explicit InlineParser(std::string_view marked)
        : marked_(marked)
    {
    }

    InlineText parse()
    {
        split();
        for (std::size_t closer = 0; closer < runs_.size(); ++closer)
            close(closer);
        return joined();
    }

private:
    void split()
    {
        pieces_.emplace_back();
        while (at_ < marked_.size()) {
            switch (marked_[at_]) {
            case '\\':
                escape();
                break;
            case '`':
                code();
                break;
            case '&':
                reference();
                break;
            case '*':
            case '_':
                delimiters();
                break;
            default:
                take(1);
            }
        }
    }

    void take(std::size_t count)
    {
        pieces_.back().text += marked_.substr(at_, count);
        at_ += count;
    }

    void escape()
    {
        bool const escapes = at_ + 1 < marked_.size()
            && (isAsciiPunctuation(marked_[at_ + 1]) || marked_[at_ + 1] == '\n');
        if (escapes)
            ++at_;
        take(1);
    }

    void reference()
    {
        auto const [value, length] = entityAt(marked_.substr(at_));
        if (length == 0)
            return take(1);
        appendCharacter(value, pieces_.back().text);
        at_ += length;
    }

    std::size_t runLength(std::size_t from) const
    {
        auto const end = marked_.find_first_not_of(marked_[from], from);
        return std::min(end, marked_.size()) - from;
    }

    void code()
    {
        auto const length = runLength(at_);
        auto const start = at_ + length;
        for (auto end = marked_.find('`', start); end != std::string_view::npos;) {
            auto const closing = runLength(end);
            if (closing == length) {
                addCode(marked_.substr(start, end - start));
                at_ = end + closing;
                return;
            }
            end = marked_.find('`', end + closing);
        }
        take(length);
    }

    void addCode(std::string_view content)
    {
        std::string text(content);
        std::ranges::replace(text, '\n', ' ');
        bool const isPadded = text.size() > 1 && text.front() == ' ' && text.back() == ' '
            && text.find_first_not_of(' ') != std::string::npos;
        if (isPadded)
            text = text.substr(1, text.size() - 2);
        pieces_.push_back({ std::move(text), false, false, true });
        pieces_.emplace_back();
    }

    void delimiters()
    {
        auto const length = runLength(at_);
        auto const before = classBefore(marked_, at_);
        auto const after = classAfter(marked_, at_ + length);
        using enum CharacterClass;
        bool const left
            = after != space && (after != punctuation || before == space || before == punctuation);
        bool const right
            = before != space && (before != punctuation || after == space || after == punctuation);
        pieces_.push_back({ std::string(marked_.substr(at_, length)) });
        bool const isStar = marked_[at_] == '*';
        runs_.push_back({ .piece = pieces_.size() - 1,
            .mark = marked_[at_],
            .written = length,
            .opens = left && (isStar || !right || before == punctuation),
            .closes = right && (isStar || !left || after == punctuation) });
        pieces_.emplace_back();
        at_ += length;
    }

    std::string& marksOf(Delimiters const& run) { return pieces_[run.piece].text; }

    // A run that both opens and closes must not take a partner with which it makes a multiple of
    // three, so that *a**b*c* and its like are read as people mean them.
    bool matches(Delimiters const& opener, Delimiters const& closer)
    {
        if (opener.isDone || !opener.opens || opener.mark != closer.mark)
            return false;
        bool const isEither = opener.closes || closer.opens;
        bool const sumsToThree = (opener.written + closer.written) % 3 == 0;
        bool const bothThree = opener.written % 3 == 0 && closer.written % 3 == 0;
        return !isEither || !sumsToThree || bothThree;
    }

    void close(std::size_t closer)
    {
        while (runs_[closer].closes && !runs_[closer].isDone) {
            auto opener = closer;
            while (opener > 0 && !matches(runs_[opener - 1], runs_[closer]))
                --opener;
            if (opener == 0)
                return;
            emphasize(opener - 1, closer);
        }
    }

    void emphasize(std::size_t opener, std::size_t closer)
    {
        auto& left = marksOf(runs_[opener]);
        auto& right = marksOf(runs_[closer]);
        std::size_t const used = left.size() >= 2 && right.size() >= 2 ? 2 : 1;
        for (auto piece = runs_[opener].piece + 1; piece < runs_[closer].piece; ++piece)
            (used == 2 ? pieces_[piece].isBold : pieces_[piece].isItalic) = true;
        left.resize(left.size() - used);
        right.resize(right.size() - used);
        for (auto between = opener + 1; between < closer; ++between)
            runs_[between].isDone = true;
        runs_[opener].isDone = left.empty();
        runs_[closer].isDone = right.empty();
    }

    InlineText joined() const
    {
        InlineText result;
        for (auto const& piece : pieces_) {
            if (piece.text.empty())
                continue;
            auto const begin = result.text.size();
            result.text += piece.text;
            InlineText::Span const span { begin, result.text.size(), piece.isBold, piece.isItalic,
                piece.isCode };
            if (haveSameStyle(span, {}))
                continue;
            auto& spans = result.spans;
            bool const continues
                = !spans.empty() && spans.back().end == begin && haveSameStyle(spans.back(), span);
            if (continues)
                spans.back().end = span.end;
            else
                spans.push_back(span);
        }
        return result;
    }

    std::string_view marked_;
    std::size_t at_ = 0;
    std::vector<Piece> pieces_;
    std::vector<Delimiters> runs_;
};

} // namespace

InlineText inlineText(std::string_view marked)
{
    return InlineParser(marked).parse();
}

} // namespace pixelhain
