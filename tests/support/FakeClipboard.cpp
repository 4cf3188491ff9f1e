#include "support/FakeClipboard.h"

namespace pixelhain {

FakeClipboard::FakeClipboard() = default;
FakeClipboard::~FakeClipboard() = default;

void FakeClipboard::setFiles(std::span<FileUrl const> files)
{
    contents.assign(files.begin(), files.end());
    ++changes;
}

} // namespace pixelhain
