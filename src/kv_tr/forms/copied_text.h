// What the dialogs of parameters put on the clipboard for other programs.
#pragma once

#include <span>
#include <string>

#include "kv_tr/interchange/transformation_format.h"
#include "kv_tr/model/transformation.h"

namespace kv_tr {

/// The formats that need nothing but a transformation, in the order in which menus list them.
std::span<const TransformationFormat> CopiedFormats();

/// A transformation in a format; nothing, after a message, where that cannot hold it. Formulas of a
/// spreadsheet have the component's decimal separator.
std::string CopiedText(const Transformation& transformation, TransformationFormat format);

}  // namespace kv_tr
