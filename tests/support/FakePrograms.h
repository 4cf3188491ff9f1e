#pragma once
#include "support/TemporaryFolder.h"
#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace pixelhain {

/// Programs that only tell how they were started. While this lives they are the first that are
/// found; or the only ones, so that what the machine has installed does not matter.
class FakePrograms {
public:
    enum class Others { found, hidden };

    explicit FakePrograms(Others others = Others::found)
    {
        auto const own = std::string(folder_.url().path());
        ::setenv("PATH", others == Others::found ? (own + ":" + before_).c_str() : own.c_str(), 1);
    }
    FakePrograms(FakePrograms const&) = delete;
    FakePrograms& operator=(FakePrograms const&) = delete;
    ~FakePrograms() { ::setenv("PATH", before_.c_str(), 1); }

    /// Adds a program that writes its arguments and the value of `variable`, one a line.
    void add(std::string_view name, std::string const& variable = "NO_SUCH_VARIABLE")
    {
        // Only what the shell itself can do: there may be no other program. A line is complete
        // when the file ends in it.
        auto const file = folder_.file(name,
            "#!/bin/sh\n{ for a in \"$@\"; do printf '%s\\n' \"$a\"; done; printf '%s\\n.\\n' \"$"
                + variable + "\"; } >>\"${0%/*}/told by ${0##*/}\"\n");
        std::filesystem::permissions(
            std::filesystem::path(file.path()), std::filesystem::perms::owner_all);
    }

    /// What the program has written so far; each start ends with a line of a single dot.
    std::string told(std::string_view name) const
    {
        std::ifstream in(folder_.url().child("told by " + std::string(name)).cString());
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }
    bool hasTold(std::string_view name) const { return told(name).ends_with("\n.\n"); }

    FileUrl const& folder() const { return folder_.url(); }

private:
    TemporaryFolder folder_;
    std::string before_ = std::getenv("PATH");
};

} // namespace pixelhain
