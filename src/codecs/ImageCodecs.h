#pragma once
#include "ports/ByteSource.h"
#include "ports/ImageSource.h"
#include <memory>

namespace pixelhain {

/// Opens the image in `bytes` with the codec that its first bytes ask for; the file's name plays no
/// part. Nothing if no codec knows them or the header is beyond use.
std::unique_ptr<ImageSource> openImage(std::unique_ptr<ByteSource> bytes);

/// Loads what codecs would otherwise look for in the file system when they are first used. To be
/// called once before a process gives up its files; any number of calls do no harm.
void warmUpCodecs();

} // namespace pixelhain
