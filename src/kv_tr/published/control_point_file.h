// Control-point files as the published loader takes them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kv_tr/files/control_point_file.h"

namespace kv_tr {

/// What the published loader takes of a control-point file.
struct LoadedPoints {
    std::vector<ControlPoint> points;
    PointSource source{};        // the file
    bool failed = false;         // reading stopped before the end of the file
    std::int32_t lineShown = 0;  // the number in the error message
    bool accepted = true;        // the result that a host gets
    bool refused = false;        // nothing was taken, because of decimal commas
};

/// Reads a control-point file whose commas separate. A file that cannot be opened is shown to the
/// user (text 70), and so is one whose numbers seem to have decimal commas where these are suspect;
/// any other failure is left to the caller.
///
/// After a failure the line shown is not the one in the file but, from the second complete point
/// on, the number of complete points, which are kept and accepted. When the first or second point
/// fails, the line shown is 1, and the point that failed is kept as far as it was read, though
/// nothing counts as accepted. All this is deliberate.
LoadedPoints LoadControlPoints(const std::string& fileName, Comma comma = Comma::kSeparator);

/// Tells the user of a failure (text 74 with the line).
void ReportFailure(const LoadedPoints& loaded);

}  // namespace kv_tr
