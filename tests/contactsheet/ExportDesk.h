#pragma once
#include "SheetDesk.h"
#include "contactsheet/ContactSheetExport.h"
#include "support/Desk.h"
#include <map>
#include <string>
#include <vector>

namespace pixelhain {

/// Knows what is at places, and writes nothing.
struct FakeFileReplacements final : FileReplacements {
    ReplacedFile look(FileUrl const& target) override { return there[target]; }
    Begun begin(FileUrl const&, std::optional<ReplacedFile> const&) override
    {
        return WriteProblem::other;
    }
    std::map<FileUrl, ReplacedFile> there;
};

/// A browser with photos in it, and what exports contact sheets of them.
struct ExportDesk : Desk {
    SheetDesk sheet;
    FakeFileReplacements files;
    ContactSheetExport sheets { { model(), loop, panels, workspace, sheet.services,
        [] { return std::string("16.11.2026"); }, background, files } };

    /// A folder "Urlaub" with this many photos, open.
    FileUrl openPhotos(int count)
    {
        Names names;
        for (int i = 0; i < count; ++i)
            names.push_back(std::to_string(100 + i) + ".jpg");
        return open("/Urlaub", names);
    }

    /// Begins an export to a file of this name and stops before it is rendered.
    FileUrl begin(std::string const& name, ContactSheetOptions const& options = {})
    {
        sheets.begin(options);
        FileUrl const target("/Urlaub/" + name);
        panels.choose(target);
        loop.settle();
        return target;
    }

    FakePdf& pdf() { return sheet.pdf; }
};

} // namespace pixelhain
