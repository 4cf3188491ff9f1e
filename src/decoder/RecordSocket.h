#pragma once
#include "decoder/Protocol.h"
#include "posix/Descriptor.h"
#include <array>
#include <optional>
#include <span>
#include <utility>

namespace pixelhain {

/// One end of a connection that keeps records apart.
class RecordSocket {
public:
    explicit RecordSocket(Descriptor socket)
        : socket_(std::move(socket))
    {
    }

    /// Two ends; nothing, with errno set, when there are no descriptors left.
    [[nodiscard]] static std::optional<std::pair<RecordSocket, Descriptor>> pair();

    /// Sends a record with copies of `descriptors`, two at most. Never waits; false if the other
    /// end is gone or has not read what was sent to it.
    template <typename Record>
    [[nodiscard]] bool send(Record const& record, std::span<int const> descriptors = {}) const
    {
        return sendBytes(std::as_bytes(std::span(&record, 1)), descriptors);
    }

    int descriptor() const { return socket_.get(); }

private:
    [[nodiscard]] bool sendBytes(
        std::span<std::byte const> bytes, std::span<int const> descriptors) const;

    Descriptor socket_;
};

/// The next message of a connection, waited for, with what it brought.
class ReceivedRecord {
public:
    /// From a side that may send descriptors. More than two are too many; all that came are closed
    /// unless they are taken.
    [[nodiscard]] static ReceivedRecord withDescriptors(RecordSocket const& socket);
    /// From a side that has nothing to send but bytes: descriptors are refused by the kernel and
    /// make the message a cut one.
    [[nodiscard]] static ReceivedRecord bytesOnly(RecordSocket const& socket);

    /// Whether the other end is gone.
    [[nodiscard]] bool isEnd() const { return isEnd_; }
    [[nodiscard]] DecoderMessage message() const;
    [[nodiscard]] Descriptor takeDescriptor(std::size_t index)
    {
        return std::exchange(descriptors_.at(index), Descriptor());
    }

private:
    // Larger than any record, so that a larger message shows.
    static constexpr std::size_t mostBytes = sizeof(DecoderRequest) + sizeof(DecoderResponse);
    static constexpr std::size_t mostDescriptors = 2;

    ReceivedRecord(RecordSocket const& socket, std::span<std::byte> control);

    std::array<std::byte, mostBytes> bytes_ {};
    std::size_t size_ = 0;
    std::array<Descriptor, mostDescriptors> descriptors_;
    std::size_t count_ = 0;
    bool isCut_ = false;
    bool isEnd_ = false;
};

} // namespace pixelhain
