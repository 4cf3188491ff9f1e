#pragma once
#include <cstddef>

namespace pixelhain {

class Background;
class FileSystem;
class FolderEvents;
class FolderNode;
class ImageTypes;
class MainLoop;
class TextOrder;
class Workspace;

/// What the sidebar asks of the world. All outlive it and the work it starts.
struct SidebarPorts {
    MainLoop& loop;
    Background& background;
    FileSystem& files;
    TextOrder& textOrder;
    ImageTypes& imageTypes;
    FolderEvents* folderEvents = nullptr; ///< absent where no changes are reported
    Workspace* workspace = nullptr; ///< absent where there is no file manager to show folders in
};

/// Told about changes of the tree, around them where the tree changes its shape. The callbacks
/// change nothing in the tree themselves.
class SidebarObserver {
public:
    virtual ~SidebarObserver() = default;
    virtual void treeWillChange() = 0; ///< the whole tree is replaced
    virtual void treeDidChange() = 0;
    virtual void childrenWillAppear(FolderNode& node, std::size_t count) = 0;
    virtual void childrenDidAppear(FolderNode& node) = 0;
    virtual void rowDidChange(FolderNode& node) = 0; ///< its count, or whether it is a leaf
    virtual void shownFoldersDidChange() = 0;
};

} // namespace pixelhain
