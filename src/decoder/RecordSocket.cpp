#include "decoder/RecordSocket.h"
#include "posix/FolderHandle.h"
#include <cstring>
#include <sys/socket.h>

namespace pixelhain {

std::optional<std::pair<RecordSocket, Descriptor>> RecordSocket::pair()
{
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0)
        return std::nullopt;
    return std::pair(RecordSocket(Descriptor(ends[0])), Descriptor(ends[1]));
}

bool RecordSocket::sendBytes(
    std::span<std::byte const> bytes, std::span<int const> descriptors) const
{
    alignas(cmsghdr) std::array<std::byte, CMSG_SPACE(2 * sizeof(int))> control {};
    iovec part { const_cast<std::byte*>(bytes.data()), bytes.size() };
    msghdr message {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    if (!descriptors.empty()) {
        message.msg_control = control.data();
        message.msg_controllen = CMSG_SPACE(descriptors.size_bytes());
        auto* const header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(descriptors.size_bytes());
        std::memcpy(CMSG_DATA(header), descriptors.data(), descriptors.size_bytes());
    }
    auto const sent = uninterrupted(
        [&] { return ::sendmsg(socket_.get(), &message, MSG_NOSIGNAL | MSG_DONTWAIT); });
    return sent == static_cast<ssize_t>(bytes.size());
}

ReceivedRecord ReceivedRecord::withDescriptors(RecordSocket const& socket)
{
    alignas(cmsghdr) std::array<std::byte, CMSG_SPACE(mostDescriptors * sizeof(int))> control {};
    return { socket, control };
}

ReceivedRecord ReceivedRecord::bytesOnly(RecordSocket const& socket)
{
    return { socket, {} };
}

ReceivedRecord::ReceivedRecord(RecordSocket const& socket, std::span<std::byte> control)
{
    iovec part { bytes_.data(), bytes_.size() };
    msghdr message {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    auto const got
        = uninterrupted([&] { return ::recvmsg(socket.descriptor(), &message, MSG_CMSG_CLOEXEC); });
    isEnd_ = got <= 0;
    if (isEnd_)
        return;
    size_ = static_cast<std::size_t>(got);
    isCut_ = (message.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) != 0;
    for (auto* header = CMSG_FIRSTHDR(&message); header; header = CMSG_NXTHDR(&message, header)) {
        if (header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_RIGHTS)
            continue;
        auto const* numbers = CMSG_DATA(header);
        for (auto left = header->cmsg_len - CMSG_LEN(0); left >= sizeof(int); left -= sizeof(int)) {
            int number = -1;
            std::memcpy(&number, numbers, sizeof number);
            numbers += sizeof number;
            descriptors_.at(count_++) = Descriptor(number);
        }
    }
}

DecoderMessage ReceivedRecord::message() const
{
    return { std::span(bytes_).first(size_), count_, isCut_ };
}

} // namespace pixelhain
