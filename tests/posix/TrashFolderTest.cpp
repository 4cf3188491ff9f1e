#include "posix/TrashFolder.h"
#include "support/TemporaryFolder.h"
#include <cstdlib>
#include <doctest/doctest.h>
#include <fstream>
#include <optional>
#include <string>

using namespace pixelhain;

namespace {

/// A variable of the environment, as it was before when this ends.
class Variable {
public:
    Variable(char const* name, char const* value)
        : name_(name)
    {
        if (auto const* const now = std::getenv(name))
            before_ = now;
        set(value);
    }
    Variable(Variable const&) = delete;
    Variable& operator=(Variable const&) = delete;
    ~Variable() { set(before_ ? before_->c_str() : nullptr); }

private:
    void set(char const* value)
    {
        if (value != nullptr)
            ::setenv(name_, value, 1);
        else
            ::unsetenv(name_);
    }

    char const* name_;
    std::optional<std::string> before_;
};

} // namespace

TEST_CASE("the home trash is in the folder for data, or where that usually is")
{
    Variable const flatpak("FLATPAK_ID", "org.example.Terminal"); // from which it was started
    Variable const home("HOME", "/home/mia");
    {
        Variable const data("XDG_DATA_HOME", "/home/mia/daten");
        CHECK(homeTrashUrl() == FileUrl("/home/mia/daten/Trash"));
    }
    for (auto const* const useless : { static_cast<char const*>(nullptr), "", "daten" }) {
        Variable const data("XDG_DATA_HOME", useless);
        CHECK(homeTrashUrl() == FileUrl("/home/mia/.local/share/Trash"));
    }
}

TEST_CASE("a flatpak uses the user's trash, not one that goes with the flatpak")
{
    TemporaryFolder folder;
    auto const info = folder.url().child(".flatpak-info");
    std::ofstream(info.cString()) << "[Application]\nname=de.pixelhain.Pixelhain\n";
    Variable const home("HOME", "/home/mia");
    Variable const data("XDG_DATA_HOME", "/home/mia/.var/app/de.pixelhain.Pixelhain/data");
    {
        Variable const host("HOST_XDG_DATA_HOME", "/home/mia/daten");
        CHECK(homeTrashUrl(info.cString()) == FileUrl("/home/mia/daten/Trash"));
    }
    Variable const host("HOST_XDG_DATA_HOME", nullptr);
    CHECK(homeTrashUrl(info.cString()) == FileUrl("/home/mia/.local/share/Trash"));
}
