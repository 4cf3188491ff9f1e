#pragma once
#include <chrono>

namespace pixelhain {

class Background;
class Clipboard;
class FileOperations;
class FileSystem;
class FolderEvents;
class ImageTypes;
class MainLoop;
class Panels;
class PicturePrefetch;
class Preferences;
class RandomSource;
class ScreenAwake;
class TextOrder;
class Workspace;

/// What the browser model asks of the world, plugged together once by the program. Everything here
/// outlives the model.
struct Ports {
    MainLoop& loop;
    Background& background;
    FileSystem& files;
    Preferences& preferences;
    TextOrder& textOrder;
    ImageTypes& imageTypes;
    Panels& panels;
    FileOperations& operations;
    Clipboard& clipboard;
    Workspace& workspace;
    PicturePrefetch& prefetch;
    ScreenAwake& screenAwake;
    RandomSource& random;
    /// Absent where changes are not reported; nothing is watched then.
    FolderEvents* folderEvents = nullptr;
    /// Photos are shown by name alone where the disk takes longer to tell of each. Nobody sees so
    /// short a wait, in which one that has it all in memory answers for a thousand files.
    std::chrono::milliseconds scanPatience { 5 };
};

} // namespace pixelhain
