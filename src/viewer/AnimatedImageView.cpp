#include "viewer/AnimatedImageView.h"
#include <algorithm>
#include <utility>

namespace pixelhain {

namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

} // namespace

/// One file being played.
struct AnimatedImageView::Reel {
    Reel() = default;
    Reel(Reel const&) = delete;
    Reel& operator=(Reel const&) = delete;
    ~Reel()
    {
        if (source)
            source->stop();
    }

    Opened source; ///< none before it is opened, and when nothing more is wanted of it
    bool mustRestart = false;
    Task work; ///< on the way to the next step
    bool isWorking = false;
    std::deque<AnimationFrame> ahead;
    std::size_t framesInLoop = 0;
    int loopsDone = 0;
    nanoseconds due {}; ///< when the frame after the one shown is to be shown
    bool isDue = true; ///< that moment has come, and the frame has not
    Task timer;
    Task retry;
};

AnimatedImageView::AnimatedImageView(House house, int maxPixel, std::function<void()> changed)
    : house_(std::move(house))
    , maxPixel_(maxPixel)
    , changed_(std::move(changed))
{
}

AnimatedImageView::~AnimatedImageView() = default;

void AnimatedImageView::show(FileUrl const& url)
{
    if (loadedUrl_ == url)
        return;
    loadedUrl_ = url;
    reel_ = std::make_unique<Reel>();
    auto const wasEmpty = std::exchange(frame_, {}).isEmpty();
    auto& decoder = house_.decoder;
    reel_->work = runThen(
        house_.background, house_.loop, Priority::userInteractive,
        [&decoder, url, maxPixel = maxPixel_] {
            return Opened(decoder.openAnimation(url, maxPixel));
        },
        [this](Opened source) { take(std::move(source)); });
    if (!wasEmpty)
        changed_();
}

void AnimatedImageView::take(Opened source)
{
    reel_->source = std::move(source);
    decodeAhead();
}

bool AnimatedImageView::isEnoughAhead() const
{
    auto const& ahead = reel_->ahead;
    return !ahead.empty()
        && (ahead.size() >= mostAhead
            || (ahead.size() + 1) * ahead.front().bitmap.cost() > mostBytesAhead);
}

void AnimatedImageView::decodeAhead()
{
    if (!reel_->source || reel_->isWorking || isEnoughAhead())
        return;
    reel_->isWorking = true;
    auto const mustRestart = std::exchange(reel_->mustRestart, false);
    reel_->work = runThen(
        house_.background, house_.loop, Priority::userInteractive,
        [source = reel_->source, mustRestart] {
            if (mustRestart)
                source->restart();
            return source->nextFrame();
        },
        [this](AnimationStep step) { takeStep(std::move(step)); });
}

void AnimatedImageView::takeStep(AnimationStep step)
{
    reel_->isWorking = false;
    if (auto* const frame = std::get_if<AnimationFrame>(&step)) {
        ++reel_->framesInLoop;
        reel_->ahead.push_back(std::move(*frame));
    } else if (std::get<AnimationEnd>(step) == AnimationEnd::notYet) {
        reel_->retry = house_.loop.after(retryTime, [this] { decodeAhead(); });
        return;
    } else if (std::get<AnimationEnd>(step) == AnimationEnd::ofLoop) {
        endLoop();
    } else {
        endPlay();
    }
    decodeAhead();
    if (reel_->isDue && !reel_->ahead.empty())
        showNext();
}

// One frame alone does not move, however often it comes.
void AnimatedImageView::endLoop()
{
    auto const plays = reel_->source->loopCount();
    ++reel_->loopsDone;
    if (std::exchange(reel_->framesInLoop, 0) < 2 || (plays > 0 && reel_->loopsDone >= plays))
        endPlay();
    else
        reel_->mustRestart = true;
}

// The decoder is let go of at once; what has been decoded is still shown.
void AnimatedImageView::endPlay()
{
    reel_->source.reset();
}

void AnimatedImageView::frameIsDue()
{
    reel_->isDue = true;
    if (!reel_->ahead.empty())
        showNext();
}

// Frames are due at times that follow from each other, so that small delays do not add up. What is
// late by more than half a frame is not caught up with: frames would rush past or be left out.
void AnimatedImageView::showNext()
{
    auto const next = std::move(reel_->ahead.front());
    reel_->ahead.pop_front();
    reel_->isDue = false;
    auto const isFirst = frame_.isEmpty();
    frame_ = next.bitmap;
    auto const now = house_.now();
    auto const begin = isFirst ? now : std::max(reel_->due, now - next.delay / 2);
    reel_->due = begin + next.delay;
    auto const wait = std::chrono::ceil<milliseconds>(reel_->due - now);
    reel_->timer = house_.loop.after(wait, [this] { frameIsDue(); });
    decodeAhead();
    changed_();
}

} // namespace pixelhain
