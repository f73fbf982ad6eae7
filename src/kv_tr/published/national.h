// The built-in transformations between the Hungarian projection systems.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "kv_tr/published/records.h"

namespace kv_tr {

/// The record of a national type, 10 to 33; nothing for any other type.
///
/// Indices 0 to 3 are published constants. The higher ones are derived, not the official digits:
/// docs/national-transformations.md says how, and what accuracy to expect.
std::optional<TR_PRM> NationalRecord(enuTR_TYPE type);

/// Where the accuracy of a national transformation holds.
enum class NationalArea {
    kHungary,   // within the border
    kBudapest,  // within 15 km of the city's centre, BOV (-4033, -1619); not meant beyond 45 km
};

/// What a host tells about a national transformation.
struct NationalInfo {
    enuTR_TYPE type;
    const char* name;         // the constant without TR_: "STG_HER", "EOV_STG_10e"
    const char* source;       // "STG", "HÉR", "HKR", "HDR", "BOV" or "EOV" in UTF-8
    const char* destination;  // likewise

    /// The expected error of a transformed point, both coordinates together, root mean square over
    /// the area, metres. It is the error of the transformation alone: what the control network and
    /// the given coordinates are worth comes on top.
    ///
    ///     10 to 19  computed: the misfit to the exact conversion with the radius of the textbooks
    ///     20 to 25  estimated at 15 km from the centre; nearer it is better, 1 cm at 8 km
    ///     26 to 33  estimated, because the higher terms of the official polynomials are unknown;
    ///               a few centimetres near the middle of the country, up to a metre at its ends
    double accuracy;
    NationalArea area;
};

/// Which constants of a national transformation are published, and how far to trust the others, in
/// the current language.
std::string NationalOrigin(enuTR_TYPE type);

/// All national transformations by ascending type.
std::span<const NationalInfo> NationalInfos();

}  // namespace kv_tr
