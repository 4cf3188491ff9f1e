#pragma once
#include "base/Task.h"
#include "base/Tint.h"
#include "model/PhotoItem.h"
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace pixelhain {

class Background;
class MainLoop;

/// What is known of a photo, line by line. Reads the file; called on any thread, and outlives
/// whoever asks.
using InfoLineSource = std::function<std::vector<std::string>(PhotoItem const&)>;

/// The overlay that tells about the photo shown. Its lines are read in the background whenever it
/// comes on screen or its photo changes. Lengths are points. Main thread only.
class InfoPanel {
public:
    static constexpr double spacing = 3;
    static constexpr double padding = 12;
    static constexpr double cornerRadius = 10;
    static constexpr double margin = 16; ///< from the viewer's bottom left corner
    static constexpr double nameSize = 13; ///< semibold; the first line
    static constexpr double lineSize = 12;
    static constexpr Tint nameTint { ColorRole::primary };
    static constexpr Tint lineTint { ColorRole::secondary };

    /// `changed` is called when lines have arrived.
    InfoPanel(InfoLineSource source, Background& background, MainLoop& loop,
        std::function<void()> changed);

    /// Shows the lines of another photo; the same again does nothing, and one of
    /// which more is known keeps its lines until the new ones are there.
    void show(PhotoItem const& item);

    /// The panel goes off the screen; the next time it begins empty.
    void hide();

    std::vector<std::string> const& lines() const { return lines_; }

private:
    InfoLineSource source_;
    Background& background_;
    MainLoop& loop_;
    std::function<void()> changed_;
    std::optional<PhotoItem> item_;
    std::vector<std::string> lines_;
    Task reading_;
};

} // namespace pixelhain
