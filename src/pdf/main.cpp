#include "pdf/CairoPdf.h"
#include "pdf/PdfModule.h"

extern "C" [[gnu::visibility("default")]] pixelhain::PdfWriter* PIXELHAIN_NEW_PDF_WRITER(
    pixelhain::FileReplacements& files)
{
    static_assert(std::is_same_v<decltype(&PIXELHAIN_NEW_PDF_WRITER), pixelhain::NewPdfWriter>);
    return new pixelhain::CairoPdfWriter(files);
}
