// Control-point files, read whole, and what is wrong with one.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kv_tr/published/records.h"

namespace kv_tr::host {

/// What a comma is in a file of control points.
enum class Comma { kSeparator, kDecimalSign, kSuspect };

struct PointReading {
    std::vector<typeXYs4Tr> pairs;  // up to the bad line
    bool opened = false;            // a file that did not has been shown
    std::uint64_t badLine = 0;      // its number; 0 when all was read
    std::string badText;            // the line, or why it could not be read
    bool hasDecimalCommas = false;  // that is what is wrong with the line

    bool Complete() const { return opened && badLine == 0; }
};

/// Reads a file of control points to its end or to its first line that is no pair. A line whose
/// numbers seem to have decimal commas is a bad one when commas are suspect.
PointReading ReadPoints(const std::string& fileName, Comma comma);

/// Says which line of a file is no pair.
std::string Complaint(const PointReading& reading, const std::string& fileName);

}  // namespace kv_tr::host
