#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace pixelhain {

class BrowserModel;

/// What the bar below the gallery says. From the left: activity, count, message; at the right end
/// the progress of long work and the link that unmarks everything.
class StatusBar {
public:
    // Said by screen readers: of the bar, and of what turns while something is under way.
    static constexpr std::string_view name = "Status";
    static constexpr std::string_view loadingName = "Ordner wird gelesen";
    static constexpr std::string_view searchingName = "Fotos werden durchsucht";
    static constexpr double itemSpacing = 10;
    static constexpr double paddingX = 12;
    static constexpr double paddingY = 6;
    static constexpr std::string_view messageDot = "·"; ///< before the message, tertiary colour
    /// Beside the progress, tertiary colour.
    static constexpr std::string_view cancelHint = "Esc bricht ab";
    static constexpr std::string_view selectNoneTitle = "Auswahl aufheben";

    explicit StatusBar(BrowserModel& model)
        : model_(model)
    {
    }

    [[nodiscard]] bool showsActivity() const;
    [[nodiscard]] std::string_view activityName() const;

    /// "40 Fotos · 3 ausgewählt", secondary colour.
    [[nodiscard]] std::string countText() const;
    /// "3 ausgewählt", to be read out when it changes: whoever marks photos cannot see the count.
    [[nodiscard]] std::string spokenMarks() const;
    [[nodiscard]] std::optional<std::string> message() const;
    /// "3 von 120": how far a long change of files has come, or "Seite 3 von 34" of a document,
    /// before the link at the right end. Escape cancels what is shown.
    [[nodiscard]] std::optional<std::string> progress() const;
    [[nodiscard]] bool showsSelectNone() const;
    void selectNone();

private:
    BrowserModel& model_;
};

} // namespace pixelhain
