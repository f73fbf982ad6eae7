// A report as one HTML file.
#pragma once

#include <string>

#include "kv_tr/files/report.h"

namespace kv_tr {

/// The report as an HTML document, UTF-8, that needs nothing else: no script, no other file. It
/// prints on A4, and takes dark and light from the reader's settings. The same report gives the
/// same bytes.
std::string HtmlOf(const Report& report);

}  // namespace kv_tr
