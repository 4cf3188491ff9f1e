#include "posix/SilentBus.h"
#include "posix/Descriptor.h"
#include "posix/FolderHandle.h"
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <optional>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>

namespace pixelhain {

namespace {

enum class Greeting { answered, unanswered, nobody };

// What is in `text` before `end`, which is taken out of it together with that.
std::string_view takeUntil(std::string_view& text, char end)
{
    auto const part = text.substr(0, text.find(end));
    text.remove_prefix(std::min(text.size(), part.size() + 1));
    return part;
}

std::string unescaped(std::string_view text)
{
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        unsigned char code = 0;
        auto const* const digits = text.data() + at + 1;
        bool const isEscaped = text[at] == '%' && at + 2 < text.size()
            && std::from_chars(digits, digits + 2, code, 16).ptr == digits + 2;
        bytes += isEscaped ? static_cast<char>(code) : text[at];
        at += isEscaped ? 2 : 0;
    }
    return bytes;
}

// As the kernel has it: names that are no path begin with a zero.
std::optional<std::string> socketName(std::string_view way)
{
    if (takeUntil(way, ':') != "unix")
        return std::nullopt;
    while (!way.empty()) {
        auto value = takeUntil(way, ',');
        auto const key = takeUntil(value, '=');
        if (key == "path")
            return unescaped(value);
        if (key == "abstract")
            return std::string(1, '\0') + unescaped(value);
    }
    return std::nullopt;
}

// A queue of callers that nobody takes in is waited for no longer than this.
Descriptor newSocket(std::chrono::milliseconds patience)
{
    Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    auto const seconds = std::chrono::floor<std::chrono::seconds>(patience);
    timeval const longest { seconds.count(),
        std::chrono::microseconds(patience - seconds).count() };
    if (socket)
        ::setsockopt(socket.get(), SOL_SOCKET, SO_SNDTIMEO, &longest, sizeof longest);
    return socket;
}

// Every bus tells whoever names no way to prove who he is which ways there are.
Greeting greet(std::string const& name, std::chrono::milliseconds patience)
{
    constexpr std::string_view words("\0AUTH\r\n", 7);
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    auto const socket = newSocket(patience);
    if (!socket || name.size() >= sizeof address.sun_path)
        return Greeting::nobody;
    std::ranges::copy(name, address.sun_path);
    bool const isPath = name.front() != '\0';
    auto const length = offsetof(sockaddr_un, sun_path) + name.size() + (isPath ? 1 : 0);
    if (::connect(socket.get(), reinterpret_cast<sockaddr const*>(&address),
            static_cast<socklen_t>(length))
        != 0)
        return errno == EAGAIN ? Greeting::unanswered : Greeting::nobody;
    static_cast<void>(::send(socket.get(), words.data(), words.size(), MSG_NOSIGNAL));
    pollfd answer { socket.get(), POLLIN, 0 };
    auto const wait = static_cast<int>(patience.count());
    return uninterrupted([&] { return ::poll(&answer, 1, wait); }) > 0 ? Greeting::answered
                                                                       : Greeting::unanswered;
}

} // namespace

// The first way that leads to somebody is the one that is gone.
bool isSilentBus(std::string_view address, std::chrono::milliseconds patience)
{
    while (!address.empty()) {
        auto const name = socketName(takeUntil(address, ';'));
        if (!name || name->empty())
            return false;
        auto const greeting = greet(*name, patience);
        if (greeting != Greeting::nobody)
            return greeting == Greeting::unanswered;
    }
    return false;
}

} // namespace pixelhain
