#include "decoder/SpaceShelf.h"
#include <algorithm>
#include <utility>

namespace pixelhain {

namespace {

// One for each worker of the viewer: pictures leave its cache as others come.
constexpr std::size_t mostKept = 3;
// A space much larger than asked for is left for the pictures that need it.
constexpr std::size_t mostWaste = 2;

} // namespace

SpaceShelf::SpaceShelf()
    : shelf_(std::make_shared<Shelf>())
{
}

std::unique_ptr<SpaceShelf::Space> SpaceShelf::take(std::size_t bytes, std::uint64_t worker)
{
    {
        std::scoped_lock const guard(shelf_->lock);
        auto const fits = [bytes, worker](auto const& space) {
            auto const size = space->memory.size();
            return space->worker == worker && size >= bytes && size / mostWaste <= bytes;
        };
        auto& spaces = shelf_->spaces;
        if (auto const found = std::ranges::find_if(spaces, fits); found != spaces.end()) {
            auto space = std::move(*found);
            spaces.erase(found);
            return space;
        }
    }
    auto made = SharedSpace::create(bytes);
    if (!made)
        return nullptr;
    return std::make_unique<Space>(Space { std::move(*made), worker });
}

void SpaceShelf::giveBack(std::unique_ptr<Space> space)
{
    put(*shelf_, std::move(space));
}

void SpaceShelf::put(Shelf& shelf, std::unique_ptr<Space> space)
{
    std::unique_ptr<Space> dropped; // freed without the lock
    std::scoped_lock const guard(shelf.lock);
    shelf.spaces.push_back(std::move(space));
    if (shelf.spaces.size() > mostKept) {
        dropped = std::move(shelf.spaces.front());
        shelf.spaces.erase(shelf.spaces.begin());
    }
}

Bitmap SpaceShelf::wrap(std::unique_ptr<Space> space, Bitmap picture)
{
    // What a larger picture left behind this one must not stay as long as this one.
    space->memory.freeBehind(picture.cost());
    auto* const pixels = const_cast<std::byte*>(space->memory.data());
    picture.pixels = std::shared_ptr<std::byte>(
        pixels, [shelf = shelf_, held = std::shared_ptr(std::move(space))](std::byte*) mutable {
            put(*shelf, std::make_unique<Space>(std::move(*held)));
        });
    return picture;
}

} // namespace pixelhain
