// Pages of the residual graph to a printer, a PDF or a picture file.
#pragma once

#include <string>

class QWidget;

namespace kv_tr {

class frmTr;

/// Shows how the page will look, with the buttons to print it or to write a PDF.
void PreviewAndPrint(const frmTr& form, QWidget* parent);

/// Asks for a file name ending in .svg or .png and writes the page there. A file that cannot be
/// written is shown to the user.
void ChooseAndSavePicture(const frmTr& form);

}  // namespace kv_tr
