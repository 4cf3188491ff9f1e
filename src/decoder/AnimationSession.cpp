#include "decoder/AnimationSession.h"
#include <span>
#include <utility>

namespace pixelhain {

namespace {

// A worker that has worked for so long is replaced before the next loop: long before its lifetime
// of processor time ends in the middle of one.
constexpr std::chrono::seconds longestShift = WorkerLimits::processorTime / 6;

} // namespace

AnimationSession::AnimationSession(
    House const& house, std::unique_ptr<OpenedFile> file, int maxPixel)
    : house_(house)
    , file_(std::move(file))
    , maxPixel_(maxPixel)
{
}

AnimationSession::~AnimationSession()
{
    dismiss();
}

std::unique_ptr<AnimationSource> AnimationSession::open(
    House const& house, FileUrl const& file, int maxPixel)
{
    auto opened = OpenedFile::open(file);
    if (!opened || opened->size() == 0)
        return nullptr;
    std::unique_ptr<AnimationSession> session(
        new AnimationSession(house, std::move(opened), maxPixel));
    if (!session->begin() && !session->isWaiting_)
        return nullptr;
    return session;
}

// An idle worker may have ended without anybody's fault; then there is one more attempt.
bool AnimationSession::begin()
{
    for (int i = 0; i < WorkerLimits::attempts; ++i) {
        auto const end = tryToBegin();
        if (end == Exchange::End::answered)
            return size_.width > 0;
        if (end != Exchange::End::gone && end != Exchange::End::neverReady)
            return false;
    }
    return false;
}

Exchange::End AnimationSession::tryToBegin()
{
    if (house_.deaths.isGivenUp(file_->descriptor()) || !hire())
        return Exchange::End::died;
    AnimationRequest request;
    request.fileBytes = file_->size();
    request.maxPixel = maxPixel_;
    AnimationResponse response;
    auto const end = ask(request, file_->descriptor(), response);
    if (end != Exchange::End::answered)
        return end;
    PixelSize const size { response.width, response.height };
    // The second worker must see what the first saw: it plays on for those who know the size.
    auto const isChanged = size_.width > 0 && (size != size_);
    size_ = isChanged ? PixelSize {} : size;
    loops_ = static_cast<int>(response.number);
    next_ = 0;
    return end;
}

AnimationStep AnimationSession::nextFrame()
{
    if (isOver_)
        return AnimationEnd::ofPlay;
    isOver_ = true; // until there is a frame
    if (!worker_ && !begin()) {
        isOver_ = !isWaiting_;
        return isWaiting_ ? AnimationEnd::notYet : AnimationEnd::ofPlay;
    }
    AnimationRequest request;
    request.operation = AnimationOperation::frame;
    request.frame = next_;
    request.spaceBytes = spaceForPicture(size_);
    auto space = shelf_.take(request.spaceBytes, worker_->serial());
    AnimationResponse response;
    if (!space || ask(request, space->memory.descriptor(), response) != Exchange::End::answered
        || response.status == AnimationStatus::failed)
        return AnimationEnd::ofPlay;
    isOver_ = false;
    if (response.status == AnimationStatus::endOfLoop) {
        shelf_.giveBack(std::move(space));
        return AnimationEnd::ofLoop;
    }
    ++next_;
    Bitmap picture;
    picture.size = size_;
    picture.bytesPerRow = response.bytesPerRow;
    picture.isOpaque = (response.flags & AnimationResponse::isOpaque) != 0;
    return AnimationFrame { shelf_.wrap(std::move(space), std::move(picture)),
        std::chrono::microseconds(response.number) };
}

void AnimationSession::restart()
{
    next_ = 0;
    if (isOver_ || !worker_ || worker_->processorTime().value_or(longestShift) < longestShift)
        return;
    dismiss();
}

void AnimationSession::stop()
{
    std::scoped_lock const guard(lock_);
    isStopped_ = true;
    if (worker_)
        worker_->kill();
}

Exchange::End AnimationSession::ask(
    AnimationRequest& request, int descriptor, AnimationResponse& response)
{
    request.id = ++lastId_;
    std::optional<ReceivedRecord> answer;
    auto end = Exchange::await(
        *worker_, house_.time,
        [&](RecordSocket const& socket) {
            return socket.send(request, std::span<int const>(&descriptor, 1));
        },
        answer);
    if (end == Exchange::End::answered) {
        auto const parsed = parseAnimationResponse(answer->message(), request, size_);
        if (parsed)
            response = *parsed;
        else
            end = Exchange::End::wrong;
    }
    if (end == Exchange::End::answered)
        return end;
    dismiss();
    std::scoped_lock const guard(lock_);
    if (!isStopped_ && end != Exchange::End::gone && end != Exchange::End::neverReady)
        house_.deaths.record(file_->descriptor());
    return end;
}

bool AnimationSession::hire()
{
    {
        std::scoped_lock const guard(lock_);
        isWaiting_ = false;
        if (isStopped_)
            return false;
    }
    auto worker = house_.pool.takeForPlay();
    isWaiting_ = !worker.has_value();
    std::scoped_lock const guard(lock_);
    worker_ = std::move(worker).value_or(nullptr);
    if (worker_ && isStopped_)
        worker_->kill();
    return worker_ != nullptr;
}

void AnimationSession::dismiss()
{
    std::unique_ptr<WorkerProcess> worker;
    {
        std::scoped_lock const guard(lock_);
        worker.swap(worker_);
    }
    if (worker)
        house_.pool.buryPlaying(std::move(worker));
}

} // namespace pixelhain
