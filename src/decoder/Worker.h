#pragma once
#include "decoder/AnimationServer.h"
#include "decoder/RecordSocket.h"
#include "decoder/SharedSpace.h"
#include "ports/ByteSource.h"
#include "ports/ImageSource.h"
#include <functional>
#include <memory>

namespace pixelhain {

/// The decoder process: answers requests one after the other until the program goes away.
class Worker {
public:
    /// Opens the image in these bytes; null if they are none. May throw: that is an answer too.
    using Opener = std::function<std::unique_ptr<ImageSource>(std::unique_ptr<ByteSource>)>;

    /// Pictures up to the size of `space` go there. Decoding that would take more than `memory` is
    /// refused with what it would take.
    Worker(RecordSocket socket, WritableSpace space, Opener opener, std::uint64_t memory,
        AnimationServer::Opener animations);

    /// Says that it is ready, and what holds it, and works until the other end is closed, or says
    /// what no program that means well would say.
    void run(std::uint32_t holds);

private:
    [[nodiscard]] bool serve(ReceivedRecord received);
    [[nodiscard]] DecoderResponse answer(
        DecoderRequest const& request, Descriptor file, Descriptor space) const;
    [[nodiscard]] DecoderResponse decode(
        DecoderRequest const& request, std::unique_ptr<ImageSource> image, Descriptor space) const;
    [[nodiscard]] DecoderResponse glance(
        DecoderRequest const& request, std::unique_ptr<ImageSource> image) const;
    [[nodiscard]] DecoderResponse readProperties(
        DecoderRequest const& request, std::unique_ptr<ByteSource> file) const;
    [[nodiscard]] static DecoderResponse deliver(
        DecodedPicture const& picture, WritableSpace const& target);
    [[nodiscard]] static DecoderResponse deliver(
        CodedJpeg const& jpeg, PixelOrigin origin, WritableSpace const& target);

    RecordSocket socket_;
    WritableSpace space_;
    Opener opener_;
    std::uint64_t memory_;
    AnimationServer animations_;
};

} // namespace pixelhain
