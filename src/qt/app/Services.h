#pragma once
#include "codecs/CodecImageTypes.h"
#include "icu/IcuTextFormats.h"
#include "icu/IcuTextOrder.h"
#include "images/ImageLoader.h"
#include "pdf/LoadedPdfWriter.h"
#include "posix/InotifyFolderEvents.h"
#include "posix/PosixFileOperations.h"
#include "posix/PosixFileReplacement.h"
#include "posix/PosixFileSystem.h"
#include "posix/SystemRandom.h"
#include "posix/ThreadPool.h"
#include "posix/ThreadQueue.h"
#include "qt/app/MissingHoldsNote.h"
#include "qt/ports/QtClipboard.h"
#include "qt/ports/QtMainLoop.h"
#include "qt/ports/QtPanels.h"
#include "qt/ports/QtScreenAwake.h"
#include "qt/ports/QtSharing.h"
#include "qt/ports/QtWorkspace.h"
#include "qt/ports/UserTime.h"
#include "qt/viewer/PreparedPictures.h"
#include <memory>

namespace pixelhain {

/// What the program gets from the system: the answers to the ports, and the threads. Made once and
/// never destroyed: threads that decode are not waited for, since they only read and end with the
/// process.
struct Services {
    struct Decoding {
        std::unique_ptr<ImageDecoder> decoder;
        std::shared_ptr<MissingHoldsNote const> missingHolds;
    };

    explicit Services(Decoding decoding);

    /// How many thumbnails, and how many parts of a contact sheet, are made side by side.
    static std::size_t thumbWidth();
    static ImageLoader::Limits loaderLimits();

    /// The decoder; starts its first processes if pictures are wanted soon. May be called before
    /// the toolkit is there.
    static Decoding startDecoder(bool isWantedSoon);

    // Decoding takes what the window leaves over: a frame is never late because of it.
    static constexpr int thumbNiceness = 5;
    static constexpr int displayNiceness = 2;
    static constexpr int sheetNiceness = 10; ///< its user looks at photos meanwhile
    static constexpr std::size_t displayWidth = 3;

    QtMainLoop loop;
    std::unique_ptr<ImageDecoder> decoder;
    std::shared_ptr<MissingHoldsNote const> missingHolds;
    PosixFileSystem files;
    IcuTextOrder textOrder;
    CodecImageTypes imageTypes;
    QtPanels panels;
    PosixFileOperations operations;
    QtClipboard clipboard;
    UserTime userTime;
    QtWorkspace workspace { loop, userTime };
    QtSharing sharing { loop, userTime };
    QtScreenAwake screenAwake;
    SystemRandom random;
    ThreadPool background;
    InotifyFolderEvents folderEvents;
    ThreadQueue thumbQueue { thumbWidth(), thumbNiceness };
    ThreadQueue displayQueue { displayWidth, displayNiceness };
    ThreadQueue sheetQueue { thumbWidth(), sheetNiceness };
    PosixFileReplacements replacements;
    LoadedPdfWriter pdf { replacements };
    IcuTextFormats formats;
    PreparedPictures prepared;
};

} // namespace pixelhain
