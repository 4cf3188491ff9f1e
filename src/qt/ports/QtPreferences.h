#pragma once
#include "ports/Preferences.h"
#include "qt/ports/IniText.h"
#include <QString>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace pixelhain {

/// Settings in an INI file. Read once, at the start; written by a thread of its own shortly after a
/// change, whole or not at all. What is left to write is written before this is gone.
class QtPreferences final : public Preferences {
public:
    /// pixelhain/pixelhain.ini in the user's configuration folder.
    static QString defaultFile();

    /// A file that is not there, cannot be read or makes no sense counts as empty.
    explicit QtPreferences(QString const& file);
    ~QtPreferences() override;

    [[nodiscard]] std::optional<bool> boolean(std::string_view key) const override;
    [[nodiscard]] std::optional<double> number(std::string_view key) const override;
    [[nodiscard]] std::optional<std::string> text(std::string_view key) const override;
    [[nodiscard]] std::optional<std::vector<std::string>> texts(
        std::string_view key) const override;

    void setBoolean(std::string_view key, bool value) override;
    void setNumber(std::string_view key, double value) override;
    void setText(std::string_view key, std::string const& value) override;
    void setTexts(std::string_view key, std::vector<std::string> const& values) override;

private:
    void changed(bool didChange);
    void writeChanges();

    QString file_;
    IniText ini_; ///< main thread only
    std::mutex lock_;
    std::condition_variable wake_;
    std::optional<std::string> toWrite_;
    bool isEnding_ = false;
    std::thread writer_;
};

} // namespace pixelhain
