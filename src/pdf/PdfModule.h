#pragma once

namespace pixelhain {

class FileReplacements;
class PdfWriter;

/// What the module that writes PDF files gives to the program, which owns it. Only what was built
/// together fits together, so the function's name has the version at its end: a program that still
/// runs while another version is installed does not find it.
using NewPdfWriter = PdfWriter* (*)(FileReplacements& files);

} // namespace pixelhain
