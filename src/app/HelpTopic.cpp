#include "app/HelpTopic.h"
#include <string_view>
#include <utility>

namespace pixelhain {

namespace {

// Puts one space before every string but the first.
class Joined {
public:
    void operator()(std::string_view part)
    {
        if (!std::exchange(isFirst_, false))
            text_ += ' ';
        text_ += part;
    }
    void operator()(HelpHeading const& block) { (*this)(block.text); }
    void operator()(HelpText const& block) { (*this)(block.text); }
    void operator()(HelpTip const& block) { (*this)(block.text); }
    void operator()(HelpSteps const& block) { addAll(block.items); }
    void operator()(HelpBullets const& block) { addAll(block.items); }
    void operator()(HelpKeys const& block)
    {
        for (auto const& row : block.rows) {
            (*this)(row.keys);
            (*this)(row.action);
        }
    }

    std::string take() { return std::move(text_); }

private:
    void addAll(std::vector<std::string> const& items)
    {
        for (auto const& item : items)
            (*this)(item);
    }

    std::string text_;
    bool isFirst_ = true;
};

} // namespace

std::string searchText(HelpTopic const& topic)
{
    Joined joined;
    joined(topic.title);
    for (auto const& block : topic.blocks)
        std::visit(joined, block);
    return joined.take();
}

} // namespace pixelhain
