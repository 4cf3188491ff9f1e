#pragma once
#include "ports/PdfWriter.h"
#include <memory>
#include <mutex>
#include <string>

namespace pixelhain {

class FileReplacements;

/// Where the module is that writes PDF files.
[[nodiscard]] std::string pdfModule();

/// Writes PDF files with a module that is loaded for the first of them: the libraries behind it
/// would take longer to load than all others of a window that may never write one. Without the
/// module nothing can be written.
class LoadedPdfWriter final : public PdfWriter {
public:
    explicit LoadedPdfWriter(FileReplacements& files, std::string module = pdfModule());

    [[nodiscard]] std::variant<std::unique_ptr<PdfCanvas>, WriteProblem> begin(
        Document const& document) override;
    [[nodiscard]] PdfPicture pictureOf(Bitmap const& bitmap, WhiteLevel background) override;

private:
    PdfWriter* writer();

    FileReplacements& files_;
    std::string const module_;
    std::once_flag isLoaded_;
    std::unique_ptr<PdfWriter> writer_; ///< null without the module
};

} // namespace pixelhain
