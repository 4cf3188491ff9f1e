#pragma once

namespace pixelhain {

class FileReplacements;
class PdfWriter;

/// What the module that writes PDF files gives to the program, which owns it: built together, they
/// need no other contract.
using NewPdfWriter = PdfWriter* (*)(FileReplacements& files);
constexpr auto newPdfWriterName = "pixelhainNewPdfWriter";

} // namespace pixelhain
