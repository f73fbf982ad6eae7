// The columns of the table of points.
#pragma once

#include <array>

namespace kv_tr::workbench {

enum class Column {
    kUse,
    kNumber,
    kIdentifier,
    kSourceFirst,
    kSourceSecond,
    kDestinationFirst,
    kDestinationSecond,
    kSigmaFirst,
    kSigmaSecond,
    kResidualFirst,
    kResidualSecond,
    kResidual,
    kStudentisedFirst,
    kStudentisedSecond,
    kRedundancyFirst,
    kRedundancySecond,
    kProbability,
    kNote,
};

inline constexpr std::size_t kColumnCount = 18;

/// The column of PairTable that shows the same; -1 for those that it lacks.
constexpr int TableColumnOf(Column column) {
    constexpr std::array<int, kColumnCount> kOf{-1, 0, 1, 2, 3,  4,  5,  -1, -1,
                                                6,  7, 8, 9, 10, 11, 12, 13, -1};
    return kOf[static_cast<std::size_t>(column)];
}

/// Whether a column shows the fit: it has no figure where there is no fit.
constexpr bool IsComputed(Column column) {
    return column >= Column::kResidualFirst && column <= Column::kProbability;
}

/// Whether a column shows figures of the assessment of the fit.
constexpr bool IsAssessed(Column column) {
    return column >= Column::kStudentisedFirst && column <= Column::kProbability;
}

/// Whether a user may change its cells.
constexpr bool IsEditable(Column column) {
    return !IsComputed(column) && column != Column::kUse && column != Column::kNumber;
}

}  // namespace kv_tr::workbench
