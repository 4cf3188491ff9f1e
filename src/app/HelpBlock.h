#pragma once
#include <string>
#include <variant>
#include <vector>

namespace pixelhain {

// The kinds of content of a help topic. Headings and key captions are plain; in all other strings
// **bold** and *italic* may stand, see InlineText.h.

struct HelpHeading {
    std::string text;
};

struct HelpText {
    std::string text;
};

/// Instructions, numbered from 1.
struct HelpSteps {
    std::vector<std::string> items;
};

struct HelpBullets {
    std::vector<std::string> items;
};

/// A table of two columns.
struct HelpKeys {
    struct Row {
        std::string keys; ///< shown as one key cap, as written
        std::string action;
    };
    std::vector<Row> rows;
};

/// A highlighted hint.
struct HelpTip {
    static constexpr char const* symbol = "lightbulb.fill";
    std::string text;
};

using HelpBlock = std::variant<HelpHeading, HelpText, HelpSteps, HelpBullets, HelpKeys, HelpTip>;

} // namespace pixelhain
