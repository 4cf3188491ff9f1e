#pragma once
#include <QDialog>
#include <mutex>
#include <string>
#include <utility>

namespace pixelhain {

/// What the kernel lacks to lock up the processes that decode; told by one of their threads at any
/// time. Thread-safe.
class MissingHoldsNote {
public:
    void write(std::string missing)
    {
        std::scoped_lock const guard(lock_);
        missing_ = std::move(missing);
    }
    std::string text() const
    {
        std::scoped_lock const guard(lock_);
        return missing_;
    }

private:
    mutable std::mutex lock_;
    std::string missing_;
};

/// Name, version and licence of the program, with what this system lacks for it.
class AboutDialog final : public QDialog {
public:
    /// `missingHolds`: as in MissingHoldsNote.
    AboutDialog(std::string const& missingHolds, QWidget* parent);

    /// Opens it over the window, or brings it to the front there.
    static void open(QWidget& window, std::string const& missingHolds);
};

} // namespace pixelhain
