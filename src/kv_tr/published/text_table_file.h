// Texts in a file, which take the place of the compiled ones.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <streambuf>

#include "kv_tr/published/ml_strings.h"
#include "kv_tr/text/strings/table.h"

namespace kv_tr {

struct TextTableFile {
    TextTable texts;
    std::size_t badLine = 0;  // counted from 1; 0 when the whole file could be read
};

/// Reads a table of texts up to the first line that is not as docs/file-formats.md says. Each text
/// must have the places ({0}, {1}, ...) and bars of the model's text with the same id, so that
/// whoever fills or splits it finds them.
TextTableFile ReadTextTable(std::streambuf& source, std::span<const std::int32_t> languages,
                            std::span<const MlString> model);

}  // namespace kv_tr
