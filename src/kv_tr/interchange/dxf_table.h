// Which groups of which entities are places, vectors, lengths and angles.
#pragma once

#include <span>
#include <string_view>

namespace kv_tr::dxf {

/// What the number, or the coordinates that begin with it, are. "Own" coordinates are those of the
/// plane that the extrusion of the entity defines, the others are those of the world.
enum class Meaning {
    kPlace,
    kOwnPlace,
    kVector,
    kOwnVector,
    kDirection,  // a vector whose length says nothing
    kLength,
    kAngle,  // of a direction in the own plane, degrees
    kBulge,
};

struct Rule {
    std::string_view type;
    int code;
    Meaning meaning;
    /// The group after which an angle of 0 that is left out has to be added once it is not 0.
    int after = 0;
};

/// The rules of a type of entity; nothing for types that are not known. A rule holds for each group
/// with the code, however often it occurs.
std::span<const Rule> RulesOf(std::string_view type);
/// Whether entities of a type are known at all.
bool IsKnown(std::string_view type);
/// Those of the object that an entity holds inside, and those of extended data.
std::span<const Rule> EmbeddedRulesOf(std::string_view type);
std::span<const Rule> ExtendedRules();

/// A type of view of the model and its groups.
struct ViewRule {
    std::string_view type;
    int centre;
    int target;
    int direction;
    int height;
    int width;  // 0 where there is none
    int twist;
};
const ViewRule* ViewRuleOf(std::string_view type);

}  // namespace kv_tr::dxf
