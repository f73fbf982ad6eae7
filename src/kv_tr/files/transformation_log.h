// The report of a fit.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "kv_tr/fit/adjustment.h"
#include "kv_tr/text/number_text.h"
#include "kv_tr/text/texts.h"

namespace kv_tr {

/// A line of a log.
struct LogLine {
    std::string text;
    std::optional<std::size_t> point{};  ///< the index of the control point that the line is about
};

/// The log of an adjustment's last fit: title, type, parameters with their formula, accuracy
/// figures with the table of the points in use, excluded points if there are any.
/// docs/file-formats.md lays the lines out.
std::vector<LogLine> LogOf(const Adjustment& adjustment, const TextLookup& texts,
                           NumberStyle style = {});

/// The same lines one by one, so that memory does not grow with the points.
void ForEachLogLine(const Adjustment& adjustment, const TextLookup& texts, NumberStyle style,
                    const std::function<void(const LogLine&)>& take);

/// The log as the text of a file, each line ended by CR LF.
std::string LogText(const Adjustment& adjustment, const TextLookup& texts, NumberStyle style = {});

/// The lines as the text of a file, each ended by CR LF.
std::string TextOf(const std::vector<LogLine>& log);

}  // namespace kv_tr
