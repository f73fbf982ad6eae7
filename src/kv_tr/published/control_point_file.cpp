// Control-point files as the published loader takes them.
#include "kv_tr/published/control_point_file.h"

#include <algorithm>
#include <utility>

#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr {

LoadedPoints LoadControlPoints(const std::string& fileName, Comma comma) {
    PointReading reading =
        ReadControlPointFile(fileName, {.codePage = FilesCodePage(), .comma = comma});
    if (std::ranges::find(reading.problems, Problem::Kind::kDecimalCommas, &Problem::kind) !=
        reading.problems.end()) {
        ShowMessage(Translated(Text::kCommasSeparateFields, {fileName}), Icon::kExclamation);
        return {.points = {}, .accepted = false, .refused = true};
    }
    LoadedPoints loaded{.points = std::move(reading.points),
                        .source = reading.source,
                        .failed = !reading.Complete()};
    if (!loaded.failed) return loaded;
    if (reading.problems[0].kind == Problem::Kind::kNotOpened) ReportOpenFailure(fileName);

    auto complete = loaded.points.size();
    if (reading.partial) {
        if (complete > 0) --complete;
        if (complete == 0) loaded.points.push_back(std::move(*reading.partial));
    }
    loaded.accepted = complete > 0;
    loaded.lineShown = static_cast<std::int32_t>(complete) + 1;
    return loaded;
}

void ReportFailure(const LoadedPoints& loaded) {
    if (!loaded.failed) return;
    ShowMessage(Translated(Text::kBadFormat) + "\r\n" + std::to_string(loaded.lineShown) +
                    Translated(Text::kLineSuffix),
                Icon::kExclamation);
}

}  // namespace kv_tr
