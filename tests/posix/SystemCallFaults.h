#pragma once
#include <climits>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace pixelhain {

/// A way for a thread's system calls to go wrong.
struct Fault {
    static constexpr int always = INT_MAX;
    static constexpr int pretendSuccess = 0;
    static constexpr int kill = -1;
    static constexpr int none = -2;
    static constexpr int uncounted = -3;

    /// The call's name; empty for all that can be made to fail. Making a nameless file goes by
    /// "O_TMPFILE".
    std::string_view call;
    /// What the call fails with, or `pretendSuccess` without doing anything, or `kill`: the process
    /// ends before the call, or `none`: it does what it should, or `uncounted`: it also says that
    /// the file has no name, as "fstat" does on drives that do not count names.
    int error = 0;
    /// Which of the calls is the first that fails, and how many do.
    int from = 1;
    int count = 1;
    /// What happens before the call, such as what other programs do.
    std::function<void()> before = nullptr;
};

/// While this lives, system calls of its thread go wrong as the faults say; the first that applies
/// wins. The wrapped calls are this test program's own: it defines functions of their names, which
/// come before the C library's.
class SystemCallFaults {
public:
    explicit SystemCallFaults(std::vector<Fault> faults);
    ~SystemCallFaults();
    SystemCallFaults(SystemCallFaults const&) = delete;
    SystemCallFaults& operator=(SystemCallFaults const&) = delete;

    /// How often a call was made since, whether it failed or not; all calls if empty.
    [[nodiscard]] int calls(std::string_view call) const;

    /// The names of all calls that can be made to fail.
    [[nodiscard]] static std::vector<std::string_view> const& names();

    /// For the wrapped calls: whether it fails, with errno set, and what it returns then.
    struct Verdict {
        bool struck = false;
        int result = 0;
    };
    [[nodiscard]] static Verdict judge(std::string_view call);

private:
    std::vector<Fault> faults_;
    std::vector<int> seen_;
    std::vector<std::string_view> made_;
};

} // namespace pixelhain
