#pragma once
#include "ports/PdfWriter.h"

namespace pixelhain {

class FileReplacements;

/// Writes PDF files with cairo and Pango. Fonts are embedded as far as they are used, and text can
/// be selected and searched.
class CairoPdfWriter final : public PdfWriter {
public:
    explicit CairoPdfWriter(FileReplacements& files)
        : files_(files)
    {
    }

    [[nodiscard]] std::variant<std::unique_ptr<PdfCanvas>, WriteProblem> begin(
        Document const& document) override;
    [[nodiscard]] PdfPicture pictureOf(Bitmap const& bitmap, WhiteLevel background) override;

private:
    FileReplacements& files_;
};

} // namespace pixelhain
