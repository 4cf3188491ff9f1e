#pragma once
#include "codecs/ByteView.h"
#include "codecs/PropertyGatherer.h"

/// One reader for each way in which files keep what they state about their photo. They are bounded
/// by PropertyLimits and read next to nothing but headers and the blocks themselves.
namespace pixelhain {

void gatherFromJpeg(ByteSource const& bytes, PropertyGatherer& gatherer);
void gatherFromPng(ByteSource const& bytes, PropertyGatherer& gatherer);
void gatherFromWebp(ByteSource const& bytes, PropertyGatherer& gatherer);
void gatherFromTiff(ByteSource const& bytes, PropertyGatherer& gatherer); ///< RAW as well
void gatherFromHeif(ByteSource const& bytes, PropertyGatherer& gatherer);
/// Files of plain boxes: JPEG XL, JPEG 2000.
void gatherFromBoxes(ByteSource const& bytes, PropertyGatherer& gatherer);
void gatherFromCr3(ByteSource const& bytes, PropertyGatherer& gatherer);
/// Every other RAW file.
void gatherFromRaw(ByteSource const& bytes, PropertyGatherer& gatherer);

} // namespace pixelhain
