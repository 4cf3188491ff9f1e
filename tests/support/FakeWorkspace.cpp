#include "support/FakeWorkspace.h"

namespace pixelhain {

FakeWorkspace::FakeWorkspace() = default;
FakeWorkspace::~FakeWorkspace() = default;

void FakeWorkspace::reveal(std::span<FileUrl const> files)
{
    revealed.emplace_back(files.begin(), files.end());
}

void FakeWorkspace::open(FileUrl const& file)
{
    opened.push_back(file);
}

} // namespace pixelhain
