#pragma once
#include "app/AppWindows.h"
#include <string>
#include <vector>

namespace pixelhain {

/// Windows that note what is asked of them.
struct FakeAppWindows final : AppWindows {
    void openHelp() override { asked.emplace_back("help"); }
    void openAbout() override { asked.emplace_back("about"); }
    void close() override { asked.emplace_back("close"); }
    void quit() override { asked.emplace_back("quit"); }
    bool showsSidebar() const override { return hasSidebar; }
    void toggleSidebar() override { hasSidebar = !hasSidebar; }
    bool isFullScreen() const override { return fillsScreen; }
    void toggleFullScreen() override { fillsScreen = !fillsScreen; }
    bool isEditingText() const override { return isEditing; }
    bool canEdit(TextEdit edit) const override { return isEditing && edit != unavailable; }
    void edit(TextEdit edit) override { edits.push_back(edit); }

    std::vector<std::string> asked;
    std::vector<TextEdit> edits;
    TextEdit unavailable = TextEdit::cut;
    bool hasSidebar = true;
    bool fillsScreen = false;
    bool isEditing = false;
};

} // namespace pixelhain
