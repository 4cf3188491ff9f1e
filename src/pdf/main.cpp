#include "pdf/CairoPdf.h"
#include "pdf/PdfModule.h"

extern "C" [[gnu::visibility("default")]] pixelhain::PdfWriter* pixelhainNewPdfWriter(
    pixelhain::FileReplacements& files)
{
    static_assert(std::is_same_v<decltype(&pixelhainNewPdfWriter), pixelhain::NewPdfWriter>);
    return new pixelhain::CairoPdfWriter(files);
}
