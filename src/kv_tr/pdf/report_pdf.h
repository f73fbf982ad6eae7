// A report as a PDF document.
#pragma once

#include <stdexcept>
#include <string>

#include "kv_tr/files/report.h"

namespace kv_tr {

/// No document could be made; what() names the font file that cannot be read, or the library's
/// error.
struct PdfError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The report as a PDF document on A4 with page numbers; heads of tables stand on each page, and
/// pictures are lines. The fonts DejaVuSans.ttf and DejaVuSans-Bold.ttf of the folder are embedded;
/// no name is the folder of the build. The same report gives the same bytes with the same fonts.
/// Characters above U+FFFF are shown as U+FFFD. Throws PdfError.
std::string PdfOf(const Report& report, const std::string& fontFolder = {});

}  // namespace kv_tr
