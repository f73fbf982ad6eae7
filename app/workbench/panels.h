// What the panels and the status line of a document say.
#pragma once

#include <string>

#include "workbench/history.h"
#include "workbench/place_info.h"

namespace kv_tr::workbench {

/// Points with all that is known about them, a row each; no more than kMostPointRows.
FindingsTable PointsTable(Document& document, const Places& places);
inline constexpr std::size_t kMostPointRows = 200;

/// Scale, rotation and accuracy in the middle of the points in use and where they are extreme among
/// the points.
FindingsTable DistortionTable(Document& document, AngleUnit unit);

/// The beginning and every step with σ0 after it; the row of the present state is marked.
FindingsTable StepsTable(const History& history);

/// A place as the status line tells it.
struct PlaceTexts {
    std::string coordinates{};  ///< of both systems, with the standard deviation of the image
    std::string figures{};      ///< scale and rotation
    std::string outside{};      ///< how far outside the points; empty inside
};
PlaceTexts TextsOf(const PlaceFigures& figures, AngleUnit unit);

}  // namespace kv_tr::workbench
