#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace pixelhain {

class TextOrder;

/// The names of a list of photos as a search compares them, in blocks that are made and gone
/// through side by side.
class FoldedNames {
public:
    FoldedNames() = default;

    /// `nameAt` is called on several threads.
    FoldedNames(std::size_t count, std::function<std::string_view(std::size_t)> const& nameAt,
        TextOrder const& order);

    [[nodiscard]] std::size_t size() const;
    [[nodiscard]] std::string_view at(std::size_t position) const;
    void add(std::string_view foldedName);

    /// The positions of the names that hold `foldedText`, in their order.
    [[nodiscard]] std::vector<std::uint32_t> holding(std::string_view foldedText) const;

private:
    static constexpr std::size_t blockSize = 16'384;

    class Block {
    public:
        [[nodiscard]] std::size_t size() const { return ends_.size(); }
        [[nodiscard]] std::string_view at(std::size_t i) const;
        void add(std::string_view foldedName);

    private:
        std::string names_; ///< one after the other
        std::vector<std::size_t> ends_;
    };

    std::vector<Block> blocks_; ///< full, all but the last
};

} // namespace pixelhain
