#pragma once
#include <future>
#include <thread>

namespace pixelhain {

/// Finds out which fonts there are on a thread of its own, which takes longer than all else that a
/// first line of text needs: beside the start of the toolkit and the making of the widgets, until
/// the first of them is measured.
class FontWarmUp {
public:
    /// Begins with what needs no toolkit.
    FontWarmUp();
    FontWarmUp(FontWarmUp const&) = delete;
    FontWarmUp& operator=(FontWarmUp const&) = delete;
    /// Waits for the thread.
    ~FontWarmUp();

    /// To be called as soon as the toolkit has its platform: it learns of the fonts then, on the
    /// same thread. Whoever needs one meanwhile waits for that, as anybody would.
    void toolkitIsReady();

private:
    std::promise<bool> toolkit_;
    bool isTold_ = false;
    std::thread thread_;
};

} // namespace pixelhain
