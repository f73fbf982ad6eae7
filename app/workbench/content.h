// What a project consists of: control points with what is known about them, and the settings.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kv_tr/fit/fit.h"
#include "kv_tr/interchange/axis_mapping.h"
#include "kv_tr/model/control_point.h"
#include "kv_tr/model/type.h"

namespace kv_tr::workbench {

/// A control point of a project.
struct Pair {
    ControlPoint point{};
    Point sigma{};          ///< standard deviations of the destination, metres; zero where unknown
    std::string note{};     ///< why the point is excluded, or anything else about it
    std::uint64_t key = 0;  ///< by which views know the point again; a document gives it

    bool HasSigma() const { return sigma != Point{}; }
    /// Whether all that projects keep is the same.
    bool IsSameAs(const Pair& other) const {
        return point == other.point && sigma == other.sigma && note == other.note;
    }
};

/// What is known about one of the two coordinate systems.
struct System {
    std::string name{};
    AxisMapping axes = AxisMapping::kEn;
    std::string crs{};  ///< a code or WKT

    bool operator==(const System&) const = default;
};

/// A file that points came from.
struct Origin {
    std::string file{};
    std::string checksum{};  ///< SHA-256; empty where it is not known
    bool isEdited = false;   ///< whether the points have been changed since

    bool operator==(const Origin&) const = default;
};

/// Everything that is not a point.
struct Settings {
    Type type = Type::kHelmert;
    Solution solution = Solution::kDocumented;
    double limit = 0.2;   ///< of the length of residuals, metres
    double alpha = 0.05;  ///< the probability that any of all points is blamed wrongly
    System source{};
    System destination{};
    std::vector<Origin> origins{};

    bool operator==(const Settings&) const = default;
};

/// A whole project.
struct Content {
    Settings settings{};
    bool isSwapped = false;  ///< whether source and destination are those of the files, exchanged
    std::vector<Pair> pairs{};
};

}  // namespace kv_tr::workbench
