#include "pdf/LoadedPdfWriter.h"
#include "base/ProgramPlace.h"
#include "pdf/PdfModule.h"
#include <cstdio>
#include <dlfcn.h>
#include <utility>

namespace pixelhain {

namespace {

// Stays for as long as the program runs: what it made is used, and its libraries cannot leave.
std::unique_ptr<PdfWriter> load(std::string const& module, FileReplacements& files)
{
    auto* const library = ::dlopen(module.c_str(), RTLD_NOW | RTLD_LOCAL);
    auto const make = reinterpret_cast<NewPdfWriter>(
        library ? ::dlsym(library, PIXELHAIN_NEW_PDF_WRITER) : nullptr);
    if (make)
        return std::unique_ptr<PdfWriter>(make(files));
    std::fprintf(stderr, "pixelhain: PDF files cannot be written: %s\n", ::dlerror());
    return nullptr;
}

} // namespace

std::string pdfModule()
{
    return programPlace("pixelhain-pdf.so", PIXELHAIN_PDF_PLACE);
}

LoadedPdfWriter::LoadedPdfWriter(FileReplacements& files, std::string module)
    : files_(files)
    , module_(std::move(module))
{
}

PdfWriter* LoadedPdfWriter::writer()
{
    std::call_once(isLoaded_, [this] { writer_ = load(module_, files_); });
    return writer_.get();
}

std::variant<std::unique_ptr<PdfCanvas>, WriteProblem> LoadedPdfWriter::begin(
    Document const& document)
{
    if (auto* const loaded = writer())
        return loaded->begin(document);
    return WriteProblem::other;
}

PdfPicture LoadedPdfWriter::pictureOf(Bitmap const& bitmap, WhiteLevel background)
{
    auto* const loaded = writer();
    return loaded ? loaded->pictureOf(bitmap, background) : PdfPicture {};
}

} // namespace pixelhain
