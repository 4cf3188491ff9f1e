#pragma once
#include "contactsheet/ContactSheetRenderer.h"
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pixelhain {

class Background;
class BrowserModel;
class FileReplacements;
class MainLoop;
class Panels;
class Workspace;

/// The photos of a contact sheet: the marked ones in the gallery's order if two or more are marked,
/// else all that are visible. A photo in the viewer or a single marked one does not count.
[[nodiscard]] std::vector<PhotoItem> contactSheetPhotos(BrowserModel const& model);
[[nodiscard]] std::size_t contactSheetPhotoCount(BrowserModel const& model);

/// What a contact sheet of the shown folders is made by unless the user says otherwise.
[[nodiscard]] ContactSheetOptions usualContactSheetOptions(BrowserModel const& model);

/// Makes contact sheets: asks where to, renders off the main thread, says how it ended, and opens
/// what came out. Sheets are made one after the other, never two into the same place unless the
/// first is there when the user agrees to replace it. Main thread only.
class ContactSheetExport {
public:
    struct Services {
        BrowserModel& model;
        MainLoop& loop;
        Panels& panels;
        Workspace& workspace;
        ContactSheetPictures::Services pictures; ///< must outlive the work under way
        std::function<std::string()> today; ///< as it is printed
        Background& background;
        FileReplacements& files; ///< must outlive the work under way
    };
    explicit ContactSheetExport(Services services)
        : services_(std::move(services))
    {
    }

    /// Of the photos that are to be had now; nothing happens if there are none.
    void begin(ContactSheetOptions const& options);

    /// Begins in the next turn of the main loop.
    void beginLater(ContactSheetOptions options);

private:
    using Place = std::shared_ptr<FileUrl const>;

    void countForgotten();
    bool isAwaited(FileUrl const& target);
    void render(ContactSheetJob job);
    struct Queued;
    void noteReplaced(std::shared_ptr<Queued> const& queued);
    void ended(Place const& place, ContactSheetResult const& result);

    Services services_;
    /// Where sheets go that wait or are under way: gone if they were forgotten before their turn.
    std::vector<std::weak_ptr<FileUrl const>> awaited_;
    std::size_t forgotten_ = 0; ///< that nobody has been told of
    std::shared_ptr<char> alive_ = std::make_shared<char>();
};

} // namespace pixelhain
