#include "decoder/AnimationServer.h"
#include "decoder/SharedSpace.h"
#include "decoder/SpaceMemory.h"
#include "posix/OpenedFile.h"
#include <cstring>
#include <utility>

namespace pixelhain {

namespace {

AnimationResponse delivered(AnimationFrame const& frame, WritableSpace const& space)
{
    auto const& bitmap = frame.bitmap;
    if (bitmap.isEmpty() || bitmap.cost() > space.size())
        return {};
    if (bitmap.pixels.get() != space.data())
        std::memcpy(space.data(), bitmap.row(0), bitmap.cost());
    AnimationResponse response;
    response.status = AnimationStatus::done;
    response.flags = bitmap.isOpaque ? AnimationResponse::isOpaque : 0;
    response.width = bitmap.size.width;
    response.height = bitmap.size.height;
    response.bytesPerRow = bitmap.bytesPerRow;
    response.number = static_cast<std::uint64_t>(frame.delay.count());
    return response;
}

} // namespace

AnimationResponse AnimationServer::answer(AnimationRequest const& request, Descriptor descriptor)
{
    AnimationResponse response;
    try {
        response = request.operation == AnimationOperation::open
            ? open(request, std::move(descriptor))
            : frame(request, std::move(descriptor));
    } catch (...) {
        animation_.reset();
    }
    response.id = request.id;
    return response;
}

AnimationResponse AnimationServer::open(AnimationRequest const& request, Descriptor file)
{
    animation_.reset();
    next_ = 0;
    animation_ = opener_(OpenedFile::adopt(std::move(file), request.fileBytes), request.maxPixel);
    if (!animation_)
        return {};
    AnimationResponse response;
    response.status = AnimationStatus::done;
    response.width = animation_->frameSize().width;
    response.height = animation_->frameSize().height;
    response.number = static_cast<std::uint64_t>(animation_->loopCount());
    return response;
}

AnimationResponse AnimationServer::frame(AnimationRequest const& request, Descriptor space)
{
    WritableSpace const target(space.get(), request.spaceBytes);
    if (!animation_ || !target || (request.frame != 0 && request.frame != next_))
        return {};
    if (request.frame == 0 && next_ > 0)
        animation_->restart();
    next_ = request.frame;
    AnimationStep step = AnimationEnd::ofPlay;
    {
        SpaceMemory const memory(target, animation_->frameSize().longestSide());
        step = animation_->nextFrame();
    }
    if (auto const* const frame = std::get_if<AnimationFrame>(&step)) {
        ++next_;
        return delivered(*frame, target);
    }
    AnimationResponse response;
    if (std::get<AnimationEnd>(step) == AnimationEnd::ofLoop)
        response.status = AnimationStatus::endOfLoop;
    return response;
}

} // namespace pixelhain
