#pragma once
#include "model/PhotoItem.h"
#include <vector>

namespace pixelhain {

class Background;

/// Frees a list of photos; a very long one, which takes longer than a frame, in the background.
void discardPhotos(Background& background, std::vector<PhotoItem> photos);

} // namespace pixelhain
