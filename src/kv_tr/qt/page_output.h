// Pages of the residual graph to a printer, a PDF or a picture file.
#pragma once

#include <string>

class QWidget;

namespace kv_tr {

class ResidualPlan;

/// Shows in a window of this title how the page will look, with the buttons to print it or to write
/// a PDF.
void PreviewAndPrint(const ResidualPlan& plan, const std::string& title, QWidget* parent);

/// Asks under this title for a file name ending in .svg or .png and writes the page there. A file
/// that cannot be written is shown to the user.
void ChooseAndSavePicture(const ResidualPlan& plan, const std::string& title);

}  // namespace kv_tr
