#pragma once
#include "base/Bitmap.h"
#include "base/FileUrl.h"
#include "ports/FileReplacement.h"
#include "ports/PdfCanvas.h"
#include <memory>
#include <optional>
#include <string>
#include <variant>

namespace pixelhain {

/// Writes PDF files. Thread-safe.
class PdfWriter {
public:
    struct Document {
        FileUrl target;
        std::string title;
        std::string creator;
        PageSize page;
        std::optional<ReplacedFile> agreed {}; ///< what may be replaced; absent: whatever is there
    };
    virtual ~PdfWriter() = default;
    [[nodiscard]] virtual std::variant<std::unique_ptr<PdfCanvas>, WriteProblem> begin(
        Document const& document)
        = 0;

    /// `bitmap` for a page; what is transparent in it shows `background`. Empty without memory.
    [[nodiscard]] virtual PdfPicture pictureOf(Bitmap const& bitmap, WhiteLevel background) = 0;
};

} // namespace pixelhain
