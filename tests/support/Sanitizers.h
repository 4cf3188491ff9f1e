#pragma once

namespace pixelhain {

// Which sanitizer the tests are built with. What compares pixels over and over, or forks a process
// for every call, runs for minutes under one and shows nothing there that the plain build does not:
// such a case is decorated with doctest::skip of these.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool isAddressSanitized = true;
#else
inline constexpr bool isAddressSanitized = false;
#endif

#if defined(__SANITIZE_THREAD__)
inline constexpr bool isThreadSanitized = true;
#else
inline constexpr bool isThreadSanitized = false;
#endif

inline constexpr bool isSanitized = isAddressSanitized || isThreadSanitized;

} // namespace pixelhain
