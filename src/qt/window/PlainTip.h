#pragma once
#include <QString>

namespace pixelhain {

/// A tip that reads exactly like `text`: the toolkit takes what looks like it for text with tags,
/// and names of files may hold anything.
[[nodiscard]] QString plainTip(QString const& text);

} // namespace pixelhain
