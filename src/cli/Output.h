#pragma once
#include <string>
#include <string_view>

namespace pixelhain {

/// What a command prints, as raw bytes, gathered into large writes. Not thread-safe.
class Output {
public:
    /// Writes to an open descriptor that stays the caller's.
    explicit Output(int descriptor);
    Output(Output const&) = delete;
    Output& operator=(Output const&) = delete;

    void write(std::string_view bytes);

    /// Hands everything to the system. False if anything, now or earlier, could not be written.
    [[nodiscard]] bool flush();

    /// Whether somebody watches what is written.
    [[nodiscard]] bool isTerminal() const;

    /// Nothing more can be written; going on is of no use.
    [[nodiscard]] bool hasFailed() const { return error_ != 0; }

    /// Why it failed, in the system's words.
    [[nodiscard]] std::string reason() const;

private:
    void send(std::string_view bytes);

    int descriptor_;
    int error_ = 0;
    std::string pending_;
};

} // namespace pixelhain
