#pragma once
#include "contactsheet/ContactSheetOptions.h"
#include "contactsheet/ContactSheetPictures.h"
#include "model/FileWork.h"
#include "model/PhotoItem.h"
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace pixelhain {

/// What one contact sheet is made of.
struct ContactSheetJob {
    std::vector<PhotoItem> photos;
    ContactSheetOptions options;
    std::string date; ///< as it is printed
    FileUrl target;
    std::optional<ReplacedFile> agreed {}; ///< at the target; absent: whatever is there
    /// Hears of each photo that has no picture, on the thread that renders; may be null.
    std::function<void(PhotoItem const&)> withoutPicture = nullptr;
    /// Hears of each page that is behind it, on the thread that renders; may be null.
    std::function<void(std::size_t done, std::size_t pages)> pageDone = nullptr;
};

/// How a rendering ended. The file at the target is new in the first case, and as it was before in
/// the others.
struct ContactSheetResult {
    enum class End : std::uint8_t { done, cancelled, failed };
    End end = End::done;
    WriteProblem problem = WriteProblem::other; ///< if it failed
    bool operator==(ContactSheetResult const&) const = default;
};

/// Writes a contact sheet as a PDF. Waits for disk and decoders: not for the main thread. Pages go
/// to the disk one by one; `run` hears how many did, and cancels between two photos.
[[nodiscard]] ContactSheetResult renderContactSheet(
    ContactSheetPictures::Services const& services, ContactSheetJob const& job, FileRun& run);

} // namespace pixelhain
