#pragma once
#include "model/PhotoItem.h"
#include <memory>
#include <vector>

namespace pixelhain {

class Background;
class PhotoList;

/// Frees a list of photos; a very long one, which takes longer than a frame, in the background.
void discardPhotos(Background& background, std::vector<PhotoItem> photos);
void discardPhotos(Background& background, std::shared_ptr<PhotoList> photos);

} // namespace pixelhain
