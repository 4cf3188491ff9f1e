#pragma once
#include "base/FileUrl.h"
#include <unordered_set>

namespace pixelhain {

/// Photos in no order. Marking, looking one up and unmarking cost the same however many there are.
using UrlSet = std::unordered_set<FileUrl>;

} // namespace pixelhain
