#pragma once
#include "base/FileUrl.h"
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace pixelhain {

struct FolderTools;
class TextOrder;

/// A folder of the tree. Its subfolders are unknown until they are loaded, once in its life. Stays
/// where it is in memory from then on; main thread only, but for a tree that nobody else knows yet.
class FolderNode {
public:
    explicit FolderNode(FileUrl const& url);

    FileUrl const& url() const { return url_; }

    /// What the row shows: the last part of the path, or the whole path where there is none.
    std::string name() const;

    /// The subfolders; empty before they are loaded, and for a leaf.
    std::span<FolderNode> children() { return children_; }
    std::span<FolderNode const> children() const { return children_; }

    /// Whether the subfolders are known. A folder that could not be read counts as a leaf.
    bool loaded() const { return loaded_; }

    FolderNode* parent() const { return parent_; }
    /// The place among the parent's children.
    std::size_t row() const;
    /// How many folders lie above, up to the root.
    int level() const;

    /// The subfolders of a node before they are its own.
    struct Children;
    [[nodiscard]] static Children nodesFor(std::vector<FileUrl> urls);

    /// Takes the subfolders; only the first call counts.
    void load(Children children);

    /// The `hashOfNames` of the subfolders.
    std::size_t namesHash() const { return namesHash_; }

    /// The node of a folder at or below this, if it is loaded. `order` is the one in which the
    /// subfolders were listed.
    FolderNode* find(FileUrl const& url, TextOrder const& order);

    /// The children, without repeats, that lead to one of the folders: it lies below them.
    std::vector<FolderNode*> leadingTo(std::span<FileUrl const> folders, TextOrder const& order);

private:
    struct Listed { };
    FolderNode(FileUrl url, Listed)
        : url_(std::move(url))
    {
    }
    FolderNode* child(FileUrl const& url, TextOrder const& order);

    FileUrl url_;
    FolderNode* parent_ = nullptr;
    std::vector<FolderNode> children_;
    std::size_t namesHash_ = 0;
    bool loaded_ = false;
};

struct FolderNode::Children {
    std::vector<FolderNode> nodes;
    std::size_t namesHash = 0;
};

/// The tree of `root`, loaded where it leads to one of the folders `shown`. Waits for a disk.
[[nodiscard]] std::unique_ptr<FolderNode> loadTree(
    FolderTools const& tools, FileUrl const& root, std::span<FileUrl const> shown);

} // namespace pixelhain
