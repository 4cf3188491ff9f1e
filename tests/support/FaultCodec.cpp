#include "support/FaultCodec.h"
#include "codecs/Animation.h"
#include "codecs/ByteView.h"
#include "codecs/ImageCodecs.h"
#include "support/Attacks.h"
#include "support/ImageWriters.h"
#include "support/MemoryBytes.h"
#include <array>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace pixelhain {

namespace {

[[noreturn]] void sleepForEver()
{
    for (;;)
        ::poll(nullptr, 0, -1);
}

[[noreturn]] void spin()
{
    for (unsigned volatile turns = 0;;)
        turns = turns + 1;
}

void crash()
{
    int volatile* volatile nowhere = nullptr; // or the compiler leaves the write out
    *nowhere = 1; // NOLINT: this is what is wanted
}

// Throws where there is not that much.
void takeMemory()
{
    constexpr std::size_t step = std::size_t { 1 } << 20U;
    std::vector<std::vector<char>> held;
    for (std::size_t taken = 0; taken < std::size_t { 8 } << 30U; taken += step)
        held.emplace_back(step, 'x');
    sleepForEver();
}

void sendBytes(void const* bytes, std::size_t count, std::span<int const> descriptors = {})
{
    iovec part { const_cast<void*>(bytes), count };
    msghdr message {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    alignas(cmsghdr) std::array<std::byte, CMSG_SPACE(64 * sizeof(int))> control {};
    if (!descriptors.empty()) {
        message.msg_control = control.data();
        message.msg_controllen = CMSG_SPACE(descriptors.size_bytes());
        auto* const head = CMSG_FIRSTHDR(&message);
        head->cmsg_level = SOL_SOCKET;
        head->cmsg_type = SCM_RIGHTS;
        head->cmsg_len = CMSG_LEN(descriptors.size_bytes());
        std::memcpy(CMSG_DATA(head), descriptors.data(), descriptors.size_bytes());
    }
    ::sendmsg(faultChannel().socket, &message, MSG_NOSIGNAL | MSG_DONTWAIT);
}

// What an honest worker would say of a picture of 2 × 2.
DecoderResponse honest()
{
    DecoderResponse response;
    response.id = faultChannel().asked.id;
    response.status = DecoderStatus::done;
    response.origin = PixelOrigin::scaled;
    response.flags = DecoderResponse::isOpaque;
    response.width = response.height = 2;
    response.bytesPerRow = 16;
    response.bytes = 32;
    return response;
}

DecoderResponse lieAbout(std::string_view what)
{
    constexpr auto huge = std::uint64_t { 1 } << 62U;
    auto response = honest();
    if (what == "id")
        response.id += 1;
    else if (what == "status")
        response.status = static_cast<DecoderStatus>(99);
    else if (what == "size") // whose product is small again in 32 bits
        response.width = response.height = 0x10001;
    else if (what == "side")
        response.height = -2;
    else if (what == "stride")
        response.bytesPerRow = huge;
    else if (what == "bytes")
        response.bytes = huge;
    else if (what == "flags")
        response.flags = 0xFF;
    else if (what == "space") {
        response.status = DecoderStatus::needsSpace;
        response.bytes = huge;
    } else if (what == "memory") {
        response.status = DecoderStatus::needsMemory;
        response.bytes = huge;
    } else if (what == "coded") { // bytes that are no JPEG
        response.flags = DecoderResponse::isCoded;
        response.bytesPerRow = 0;
        response.bytes = 100;
    } else if (what == "record") { // of properties that nobody wrote
        response = {};
        response.id = faultChannel().asked.id;
        response.status = DecoderStatus::done;
        response.bytes = 100;
    }
    return response;
}

std::unique_ptr<ImageSource> pictureOf(int red)
{
    auto const color = static_cast<std::uint32_t>(red) << 24U | 0xFFU;
    return openImage(memoryBytes(writeBmp(RgbaPixels::filled({ 1, 1 }, color))));
}

std::unique_ptr<ImageSource> attempt(std::string_view name)
{
    auto const* const attack = attackNamed(name);
    if (attack == nullptr)
        return nullptr;
    constexpr int firstOfRequest = 4; // behind the standard streams and the socket
    return pictureOf(attack->attempt({ firstOfRequest, faultChannel().socket, ::getppid() }));
}

void end(std::string_view command)
{
    if (command == "segv")
        crash();
    if (command == "abort")
        std::abort();
    if (command == "exit")
        ::_exit(0);
    if (command == "kill")
        std::raise(SIGKILL);
}

void stay(std::string_view command)
{
    if (command == "silent")
        sleepForEver();
    if (command == "spin")
        spin();
    if (command == "stop")
        std::raise(SIGSTOP);
    if (command == "alloc")
        takeMemory();
    if (command == "leave") {
        ::close(faultChannel().socket);
        sleepForEver();
    }
}

void lie(std::string_view command)
{
    auto response = honest();
    std::vector<std::uint8_t> const noise(4096, 0xA5);
    if (command.starts_with("lie:"))
        response = lieAbout(command.substr(4));
    if (command == "huge")
        response.width = response.height = 30'000;
    if (command.starts_with("lie:") || command == "twice" || command == "huge")
        sendBytes(&response, sizeof response);
    if (command == "garbage")
        sendBytes(noise.data(), sizeof response);
    if (command == "long")
        sendBytes(noise.data(), noise.size());
    if (command == "short")
        sendBytes(&response, sizeof response - 1);
    if (command == "flood")
        for (int i = 0; i < 100'000; ++i)
            sendBytes(noise.data(), sizeof response);
    if (command == "descriptors")
        sendBytes(&response, sizeof response, std::vector<int>(64, faultChannel().socket));
}

std::unique_ptr<ImageSource> obey(std::string_view command)
{
    constexpr std::string_view attack = "attack:";
    end(command);
    stay(command);
    lie(command);
    if (command == "throw")
        throw 42;
    return command.starts_with(attack) ? attempt(command.substr(attack.size())) : nullptr;
}

constexpr std::string_view sign = "X-TEST ";

// The command in a file; empty if it has none.
std::string commandIn(ByteSource const& bytes)
{
    constexpr std::size_t longest = 100;
    auto const head = bytesAt(bytes, 0, longest);
    std::string_view const text(reinterpret_cast<char const*>(head.data()), head.size());
    return std::string(text.starts_with(sign) ? text.substr(sign.size()) : "");
}

class FaultAnimation final : public AnimationSource {
public:
    FaultAnimation(int when, std::string command)
        : when_(when)
        , command_(std::move(command))
    {
    }
    PixelSize frameSize() const override
    {
        if (command_ == "side")
            return { 0, -1 };
        return command_ == "large" ? PixelSize { 5000, 5000 } : PixelSize { 16, 12 };
    }
    int loopCount() const override { return 0; }
    AnimationStep nextFrame() override
    {
        auto const isNow = frame_ == when_;
        if (isNow)
            static_cast<void>(obey(command_));
        auto const isOther = isNow && command_ == "size";
        auto bitmap = Bitmap::allocate(isOther ? PixelSize { 12, 16 } : frameSize(), true);
        std::memset(bitmap.row(0), frame_++, bitmap.cost());
        auto const delay = isNow && command_ == "delay" ? -1 : 40'000;
        return AnimationFrame { bitmap, std::chrono::microseconds(delay) };
    }
    void restart() override { }
    void stop() override { }

private:
    int when_;
    std::string command_;
    int frame_ = 0;
};

} // namespace

std::unique_ptr<ImageSource> openWithFaults(std::unique_ptr<ByteSource> bytes)
{
    auto const command = commandIn(*bytes);
    return command.empty() ? openImage(std::move(bytes)) : obey(command);
}

std::unique_ptr<AnimationSource> openAnimationWithFaults(
    std::unique_ptr<ByteSource> bytes, int maxPixel)
{
    constexpr std::string_view play = "play:";
    auto const command = commandIn(*bytes);
    if (command.empty())
        return openAnimation(std::move(bytes), maxPixel);
    if (!command.starts_with(play)) {
        static_cast<void>(obey(command));
        return nullptr;
    }
    auto const name = command.find(':', play.size());
    return std::make_unique<FaultAnimation>(
        std::stoi(command.substr(play.size())), command.substr(name + 1));
}

FaultChannel& faultChannel()
{
    static FaultChannel channel;
    return channel;
}

} // namespace pixelhain
