// Which groups of which entities are places, vectors, lengths and angles.
#include "kv_tr/interchange/dxf_table.h"

#include <algorithm>
#include <array>

namespace kv_tr::dxf {
namespace {

using enum Meaning;

// Sorted by type.
constexpr std::array kRules{
    Rule{"3DFACE", 10, kPlace},        Rule{"3DFACE", 11, kPlace},
    Rule{"3DFACE", 12, kPlace},        Rule{"3DFACE", 13, kPlace},
    Rule{"ARC", 10, kOwnPlace},        Rule{"ARC", 40, kLength},
    Rule{"ATTDEF", 10, kOwnPlace},     Rule{"ATTDEF", 11, kOwnPlace},
    Rule{"ATTDEF", 40, kLength},       Rule{"ATTDEF", 50, kAngle, 40},
    Rule{"ATTRIB", 10, kOwnPlace},     Rule{"ATTRIB", 11, kOwnPlace},
    Rule{"ATTRIB", 40, kLength},       Rule{"ATTRIB", 50, kAngle, 40},
    Rule{"CIRCLE", 10, kOwnPlace},     Rule{"CIRCLE", 40, kLength},
    Rule{"DIMENSION", 10, kPlace},     Rule{"DIMENSION", 11, kOwnPlace},
    Rule{"DIMENSION", 12, kOwnVector}, Rule{"DIMENSION", 13, kPlace},
    Rule{"DIMENSION", 14, kPlace},     Rule{"DIMENSION", 15, kPlace},
    Rule{"DIMENSION", 16, kOwnPlace},  Rule{"DIMENSION", 40, kLength},
    Rule{"DIMENSION", 50, kAngle},     Rule{"IMAGE", 10, kPlace},
    Rule{"IMAGE", 11, kVector},        Rule{"IMAGE", 12, kVector},
    Rule{"INSERT", 10, kOwnPlace},     Rule{"LEADER", 10, kPlace},
    Rule{"LEADER", 40, kLength},       Rule{"LEADER", 41, kLength},
    Rule{"LEADER", 211, kDirection},   Rule{"LEADER", 212, kVector},
    Rule{"LEADER", 213, kVector},      Rule{"LINE", 10, kPlace},
    Rule{"LINE", 11, kPlace},          Rule{"LWPOLYLINE", 10, kOwnPlace},
    Rule{"LWPOLYLINE", 40, kLength},   Rule{"LWPOLYLINE", 41, kLength},
    Rule{"LWPOLYLINE", 42, kBulge},    Rule{"LWPOLYLINE", 43, kLength},
    Rule{"MESH", 10, kPlace},          Rule{"MTEXT", 10, kPlace},
    Rule{"MTEXT", 11, kDirection},     Rule{"MTEXT", 40, kLength},
    Rule{"MTEXT", 41, kLength},        Rule{"MTEXT", 42, kLength},
    Rule{"MTEXT", 43, kLength},        Rule{"MTEXT", 46, kLength},
    Rule{"MTEXT", 48, kLength},        Rule{"MTEXT", 49, kLength},
    Rule{"MTEXT", 50, kAngle, 40},     Rule{"POINT", 10, kPlace},
    Rule{"POINT", 50, kAngle},         Rule{"POLYLINE", 40, kLength},
    Rule{"POLYLINE", 41, kLength},     Rule{"RAY", 10, kPlace},
    Rule{"RAY", 11, kDirection},       Rule{"SHAPE", 10, kPlace},
    Rule{"SHAPE", 40, kLength},        Rule{"SHAPE", 50, kAngle, 40},
    Rule{"SOLID", 10, kOwnPlace},      Rule{"SOLID", 11, kOwnPlace},
    Rule{"SOLID", 12, kOwnPlace},      Rule{"SOLID", 13, kOwnPlace},
    Rule{"SPLINE", 10, kPlace},        Rule{"SPLINE", 11, kPlace},
    Rule{"SPLINE", 12, kVector},       Rule{"SPLINE", 13, kVector},
    Rule{"TEXT", 10, kOwnPlace},       Rule{"TEXT", 11, kOwnPlace},
    Rule{"TEXT", 40, kLength},         Rule{"TEXT", 50, kAngle, 40},
    Rule{"TOLERANCE", 10, kPlace},     Rule{"TOLERANCE", 11, kDirection},
    Rule{"TRACE", 10, kOwnPlace},      Rule{"TRACE", 11, kOwnPlace},
    Rule{"TRACE", 12, kOwnPlace},      Rule{"TRACE", 13, kOwnPlace},
    Rule{"VERTEX", 10, kOwnPlace},     Rule{"VERTEX", 40, kLength},
    Rule{"VERTEX", 41, kLength},       Rule{"VERTEX", 42, kBulge},
    Rule{"VERTEX", 50, kAngle},        Rule{"WIPEOUT", 10, kPlace},
    Rule{"WIPEOUT", 11, kVector},      Rule{"WIPEOUT", 12, kVector},
    Rule{"XLINE", 10, kPlace},         Rule{"XLINE", 11, kDirection},
};
static_assert(std::ranges::is_sorted(kRules, {}, &Rule::type));

/// Entities without places, or whose places have rules of their own.
constexpr std::array<std::string_view, 5> kOthers{"ELLIPSE", "HATCH", "MPOLYGON", "SEQEND",
                                                  "VIEWPORT"};

// Sorted by type. Inside an MTEXT lies a copy of it with columns, inside attributes an MTEXT.
constexpr std::array kEmbedded{
    Rule{"ATTDEF", 10, kPlace},  Rule{"ATTDEF", 11, kDirection}, Rule{"ATTDEF", 40, kLength},
    Rule{"ATTDEF", 41, kLength}, Rule{"ATTDEF", 42, kLength},    Rule{"ATTDEF", 43, kLength},
    Rule{"ATTDEF", 50, kAngle},  Rule{"ATTRIB", 10, kPlace},     Rule{"ATTRIB", 11, kDirection},
    Rule{"ATTRIB", 40, kLength}, Rule{"ATTRIB", 41, kLength},    Rule{"ATTRIB", 42, kLength},
    Rule{"ATTRIB", 43, kLength}, Rule{"ATTRIB", 50, kAngle},     Rule{"MTEXT", 10, kDirection},
    Rule{"MTEXT", 11, kPlace},   Rule{"MTEXT", 40, kLength},     Rule{"MTEXT", 41, kLength},
    Rule{"MTEXT", 42, kLength},  Rule{"MTEXT", 43, kLength},     Rule{"MTEXT", 44, kLength},
    Rule{"MTEXT", 45, kLength},  Rule{"MTEXT", 46, kLength},
};
static_assert(std::ranges::is_sorted(kEmbedded, {}, &Rule::type));

constexpr std::array kExtended{Rule{"", 1011, kPlace}, Rule{"", 1012, kVector},
                               Rule{"", 1013, kDirection}, Rule{"", 1041, kLength},
                               Rule{"", 1042, kLength}};

constexpr std::array kViews{ViewRule{"VIEW", 10, 12, 11, 40, 41, 50},
                            ViewRule{"VIEWPORT", 12, 17, 16, 45, 0, 51},
                            ViewRule{"VPORT", 12, 17, 16, 40, 0, 51}};

/// Those of a type among rules that are sorted by it.
std::span<const Rule> OfType(std::span<const Rule> rules, std::string_view type) {
    const auto first = std::ranges::lower_bound(rules, type, {}, &Rule::type);
    const auto last = std::ranges::upper_bound(rules, type, {}, &Rule::type);
    return {first, last};
}

}  // namespace

std::span<const Rule> RulesOf(std::string_view type) { return OfType(kRules, type); }

bool IsKnown(std::string_view type) {
    return !RulesOf(type).empty() || std::ranges::find(kOthers, type) != kOthers.end();
}

std::span<const Rule> EmbeddedRulesOf(std::string_view type) { return OfType(kEmbedded, type); }

std::span<const Rule> ExtendedRules() { return kExtended; }

const ViewRule* ViewRuleOf(std::string_view type) {
    const auto* rule = std::ranges::find(kViews, type, &ViewRule::type);
    return rule == kViews.end() ? nullptr : rule;
}

}  // namespace kv_tr::dxf
