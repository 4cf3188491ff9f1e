#pragma once
#include <cstddef>
#include <string>

namespace pixelhain {

class Output;

/// A line on a terminal that shows how far work has come; nothing where nobody watches.
class ProgressBar {
public:
    explicit ProgressBar(Output& output);
    ProgressBar(ProgressBar const&) = delete;
    ProgressBar& operator=(ProgressBar const&) = delete;
    ~ProgressBar() { clear(); }

    void show(std::size_t done, std::size_t total);

    /// Takes the line away, for other words or for good.
    void clear();

private:
    Output& output_;
    bool const isWatched_;
    std::string shown_;
};

/// "[######------------------]  3 of 12 pages"
[[nodiscard]] std::string progressLine(std::size_t done, std::size_t total);

} // namespace pixelhain
