#include "codecs/ImageCodecs.h"
#include "decoder/WorkerMain.h"
#include <array>
#include <csignal>
#include <cstring>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

// The decoder program with one more format: files that tell it to go wrong in a certain way.

using namespace pixelhain;

namespace {

constexpr std::string_view mark = "X-TEST ";

void send(void const* bytes, std::size_t size, std::size_t descriptors = 0)
{
    alignas(cmsghdr) std::array<char, CMSG_SPACE(64 * sizeof(int))> control {};
    iovec part { const_cast<void*>(bytes), size };
    msghdr message {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    if (descriptors > 0) {
        message.msg_control = control.data();
        message.msg_controllen = CMSG_SPACE(descriptors * sizeof(int));
        auto* const header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(descriptors * sizeof(int));
        std::vector<int> const numbers(descriptors, 0);
        std::memcpy(CMSG_DATA(header), numbers.data(), descriptors * sizeof(int));
    }
    ::sendmsg(WorkerDescriptors::socket, &message, MSG_NOSIGNAL | MSG_DONTWAIT);
}

[[noreturn]] void hang()
{
    for (;;)
        ::poll(nullptr, 0, -1);
}

// An answer to any request, of a picture larger than the space.
DecoderResponse hugePicture()
{
    DecoderResponse response;
    response.status = DecoderStatus::done;
    response.origin = PixelOrigin::full;
    response.id = 1;
    response.width = response.height = 30000;
    response.bytesPerRow = 120000;
    response.bytes = std::uint64_t { 120000 } * 30000;
    return response;
}

void touch(std::size_t bytes)
{
    constexpr std::size_t step = std::size_t { 1 } << 20;
    std::vector<std::vector<char>> held;
    for (std::size_t done = 0; done < bytes; done += step)
        held.emplace_back(step, 'x');
    hang();
}

void obey(std::string_view command)
{
    std::array<std::byte, 100> const garbage {};
    if (command == "segv")
        std::raise(SIGSEGV);
    if (command == "kill")
        std::raise(SIGKILL);
    if (command == "stop")
        std::raise(SIGSTOP);
    if (command == "abort")
        std::abort();
    if (command == "exit")
        ::_exit(0);
    if (command == "spin")
        for (bool volatile on = true; on;) { }
    if (command == "silent")
        hang();
    if (command == "alloc")
        touch(std::size_t { 8 } << 30);
    if (command == "garbage")
        send(garbage.data(), sizeof(DecoderResponse));
    if (command == "long")
        send(garbage.data(), garbage.size());
    if (command == "descriptors") {
        auto const answer = hugePicture();
        send(&answer, sizeof answer, 64);
    }
    if (command == "huge") {
        auto const answer = hugePicture();
        send(&answer, sizeof answer);
    }
    if (command == "flood")
        for (int i = 0; i < 100'000; ++i)
            send(garbage.data(), sizeof(DecoderResponse));
    if (command == "throw")
        throw 42;
}

std::unique_ptr<ImageSource> openFaulty(std::unique_ptr<ByteSource> bytes)
{
    std::array<std::uint8_t, 32> start {};
    auto const got = bytes->readAt(0, start);
    std::string_view const text(reinterpret_cast<char const*>(start.data()), got);
    if (!text.starts_with(mark))
        return openImage(std::move(bytes));
    obey(text.substr(mark.size()));
    return nullptr;
}

} // namespace

int main(int count, char** words)
{
    auto const arguments = std::span<char* const>(words, static_cast<std::size_t>(count));
    ::_exit(runWorker(arguments, openFaulty));
}
