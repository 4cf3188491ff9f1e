#pragma once
#include "decoder/AnimationProtocol.h"
#include "decoder/DeathRecords.h"
#include "decoder/Exchange.h"
#include "decoder/SpaceShelf.h"
#include "decoder/WorkerPool.h"
#include "ports/AnimationSource.h"
#include "posix/OpenedFile.h"
#include <memory>
#include <mutex>

namespace pixelhain {

/// An animation that a decoder process of its own plays. When that dies, the play is over.
class AnimationSession final : public AnimationSource {
public:
    /// What outlives all sessions.
    struct House {
        WorkerPool& pool;
        DeathRecords& deaths;
        Exchange::Time time; ///< for opening it, and for each frame
    };

    /// Null if the file cannot be opened, is no animation, or has cost too many workers.
    [[nodiscard]] static std::unique_ptr<AnimationSource> open(
        House const& house, FileUrl const& file, int maxPixel);

    ~AnimationSession() override;

    [[nodiscard]] PixelSize frameSize() const override { return size_; }
    [[nodiscard]] int loopCount() const override { return loops_; }
    [[nodiscard]] AnimationStep nextFrame() override;
    void restart() override;
    void stop() override;

private:
    AnimationSession(House const& house, std::unique_ptr<OpenedFile> file, int maxPixel);

    [[nodiscard]] bool begin();
    [[nodiscard]] Exchange::End tryToBegin();
    [[nodiscard]] Exchange::End ask(
        AnimationRequest& request, int descriptor, AnimationResponse& response);
    [[nodiscard]] bool hire();
    void dismiss();

    House house_;
    std::unique_ptr<OpenedFile> file_;
    int maxPixel_;
    SpaceShelf shelf_; // its own: frames are of one size, and are gone with the animation
    PixelSize size_;
    int loops_ = 0;
    std::uint32_t next_ = 0;
    bool isOver_ = false;
    bool isWaiting_ = false; ///< for a place to be played
    std::uint64_t lastId_ = 0;
    std::mutex lock_; // of what follows
    std::unique_ptr<WorkerProcess> worker_;
    bool isStopped_ = false;
};

} // namespace pixelhain
