#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pixelhain {

/// What can be done with a folder of the tree.
enum class FolderCommand : std::uint8_t {
    showOnly,
    addToSelection,
    removeFromSelection,
    makeRoot,
    divider,
    reveal,
    reloadTree,
};

/// The title of a command exactly as it is read; empty for the divider.
[[nodiscard]] std::string_view titleOf(FolderCommand command);

/// How one row of the folder tree looks, reads and answers. Lengths are points.
struct FolderRow {
    static constexpr double spacing = 6; ///< between symbol, name and count
    static constexpr double countPaddingX = 6;
    static constexpr double countPaddingY = 1;
    static constexpr double countCornerRadius = 5;
    static constexpr double countFillOpacity = 0.08; ///< of the primary colour
    static constexpr double indentPerLevel = 14; ///< less in narrow columns
    static constexpr double roomForName = 116; ///< with triangle and symbol, however deep it lies

    std::string name;
    std::string path; ///< as it is shown
    bool isRoot = false; ///< semibold
    bool isCurrent = false; ///< the gallery shows this folder
    std::optional<std::size_t> count; ///< photos directly in it, once counted

    [[nodiscard]] std::string_view symbol() const { return isCurrent ? "folder.fill" : "folder"; }

    /// The number beside the name; empty while it is unknown and for no photos.
    [[nodiscard]] std::string countText() const;

    /// The path, and how many photos there are once that is known.
    [[nodiscard]] std::string helpText() const;

    /// What a screen reader says after the name: how many photos, and how deep the folder lies.
    [[nodiscard]] std::string spokenDetails(int level) const;

    /// The entries of the context menu; `shownFolders` is how many folders the gallery shows.
    [[nodiscard]] std::vector<FolderCommand> menu(std::size_t shownFolders) const;

    /// How far a row of this level is moved to the right in a column of this width: in equal steps,
    /// but for deep levels in ever smaller ones, so that there is always room for the name.
    [[nodiscard]] static double indent(int level, double width);
};

} // namespace pixelhain
