#pragma once
#include "base/Bitmap.h"
#include "decoder/SharedSpace.h"
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace pixelhain {

/// The shared memory that large pictures are handed over in, one picture each. Memory that was used
/// before costs a fraction of the time of new memory, so a little of it is kept. A space goes back
/// to the worker that had it and to no other: one that held on to it sees its own pictures only.
/// Thread-safe.
class SpaceShelf {
public:
    SpaceShelf();

    /// Instead of a serial number: the worker will not be there to use its space again, so that
    /// is not kept.
    static constexpr std::uint64_t noWorker = 0;

    struct Space {
        SharedSpace memory;
        std::uint64_t worker = noWorker; ///< its serial number
    };

    /// A space of at least `bytes` for this worker; null if there is no memory for it.
    [[nodiscard]] std::unique_ptr<Space> take(std::size_t bytes, std::uint64_t worker);
    /// One that the worker has let go of.
    void giveBack(std::unique_ptr<Space> space);

    /// `picture`, whose pixels lie at the beginning of `space`, without a copy: the space comes
    /// back when the last copy of the bitmap is gone, which may be after this shelf.
    [[nodiscard]] Bitmap wrap(std::unique_ptr<Space> space, Bitmap picture);

private:
    struct Shelf {
        std::mutex lock;
        std::vector<std::unique_ptr<Space>> spaces; ///< the last used last
    };
    static void put(Shelf& shelf, std::unique_ptr<Space> space);

    std::shared_ptr<Shelf> shelf_;
};

} // namespace pixelhain
