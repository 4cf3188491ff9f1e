#pragma once
#include "base/Task.h"

namespace pixelhain {

class BrowserModel;

/// Passes every key that goes down in the program to the model before any control gets it; keys
/// that were the model's go no further. Ends when the task is dropped.
[[nodiscard]] Task monitorKeys(BrowserModel& model);

} // namespace pixelhain
