#pragma once
#include "codecs/DecodeLimits.h"
#include "decoder/DeathRecords.h"
#include "decoder/Exchange.h"
#include "decoder/SpaceShelf.h"
#include "decoder/WorkerPool.h"
#include "ports/ImageDecoder.h"
#include <atomic>
#include <functional>

namespace pixelhain {

class OpenedFile;

/// Has image files decoded in other processes. Files are opened here; a worker sees nothing but the
/// descriptor, and costs one picture at most when it dies of it.
class PooledDecoder final : public ImageDecoder {
public:
    /// What a request may take of the processors; on the clock WorkerLimits::clockFactor as much.
    using Deadline = std::function<std::chrono::nanoseconds(DecoderRequest const&)>;

    /// `frameTime`: what a frame of an animation may take of the processors.
    explicit PooledDecoder(WorkerPool::Options options, Deadline deadline = usualDeadline,
        std::chrono::nanoseconds frameTime = DecodeLimits::frameTime);

    /// Starts workers that will be wanted soon. Never waits.
    void prepare(std::size_t workers) { pool_.prepare(workers); }

    [[nodiscard]] std::optional<DecodedPicture> decode(DecodeRequest const& request) override;
    [[nodiscard]] std::optional<ImageMeta> readMeta(FileUrl const& file) override;
    [[nodiscard]] std::optional<Glance> glance(FileUrl const& file, int maxPixel) override;
    [[nodiscard]] std::optional<PhotoProperties> readProperties(FileUrl const& file) override;
    [[nodiscard]] std::unique_ptr<AnimationSource> openAnimation(
        FileUrl const& file, int maxPixel) override;

    /// By DecodeLimits.
    [[nodiscard]] static std::chrono::nanoseconds usualDeadline(DecoderRequest const& request);

private:
    struct Job;
    enum class Next : std::uint8_t { stop, again };

    std::optional<DecoderResponse> serve(FileUrl const& url, Job& job);
    [[nodiscard]] Next turn(OpenedFile const& file, Job& job);
    [[nodiscard]] Exchange ask(WorkerProcess& worker, OpenedFile const& file, Job& job);
    [[nodiscard]] static bool isHonest(
        WorkerProcess const& worker, Job& job, DecoderResponse const& response);
    [[nodiscard]] Next hear(WorkerProcess const& worker, Job& job, DecoderResponse const& response);
    void bury(std::unique_ptr<WorkerProcess> worker, Job& job, Exchange::End end);
    [[nodiscard]] Bitmap pixels(
        WorkerProcess const& worker, Job& job, DecoderResponse const& response);

    Deadline const deadline_;
    std::chrono::nanoseconds const frameTime_;
    DeathRecords deaths_;
    DeathRecords deathsAtPlay_; // their own: a damaged frame in the middle is no reason not to
                                // show the file's thumbnail
    SpaceShelf shelf_;
    WorkerPool pool_;
    std::atomic<std::uint64_t> lastId_ = 0;
};

} // namespace pixelhain
