// The built-in transformations: between the Hungarian projection systems, and of fathoms.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "kv_tr/model/transformation.h"
#include "kv_tr/text/text_id.h"

namespace kv_tr {

/// The transformation of a national type, 10 to 33; nothing for any other type.
///
/// Indices 0 to 3 are published constants. The higher ones are derived, not the official digits:
/// docs/national-transformations.md says how, and what accuracy to expect.
std::optional<Transformation> NationalTransformation(Type type);

/// Where the accuracy of a national transformation holds.
enum class NationalArea {
    kHungary,   // within the border
    kBudapest,  // within 15 km of the city's centre, BOV (-4033, -1619); not meant beyond 45 km
};

/// What a program tells its user about a national transformation.
struct NationalInfo {
    Type type;
    const char* name;         // "STG_HER", "EOV_STG_10e"
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

/// The text that says which constants of a national transformation are published, and how far to
/// trust the others.
Text NationalOrigin(Type type);

/// All national transformations by ascending type.
std::span<const NationalInfo> NationalInfos();

/// The national transformation of a name such as "STG_HER"; a null pointer where there is none.
const NationalInfo* FindNational(std::string_view name);

/// Viennese fathoms to metres, 1 fathom being 1.89648384 m.
Transformation FathomToMetre();

/// Metres to Viennese fathoms. The factor 0.527291601 is the reciprocal rounded to nine decimals,
/// as it is published; there and back differs from the identity by 4e-11 of the coordinate.
Transformation MetreToFathom();

}  // namespace kv_tr
