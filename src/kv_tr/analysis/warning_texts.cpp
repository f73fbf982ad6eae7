// Warnings in words.
#include <array>
#include <cmath>

#include "kv_tr/analysis/warnings.h"
#include "kv_tr/model/type_name.h"
#include "kv_tr/text/round_number.h"

namespace kv_tr {
namespace {

using Id = Warning::Id;
using Cause = Warning::Cause;

std::string CauseText(const Warning& warning, const TextLookup& texts, NumberStyle style) {
    switch (warning.cause) {
        case Cause::kOrigin:
            return FillPlaces(texts(Text::kCauseOrigin),
                              {FixedText(warning.Value("origin_distance"), 1, style)});
        case Cause::kConditioned: return texts(Text::kCauseIllConditioned);
        case Cause::kNotConverged: return texts(Text::kCauseNotConverged);
        case Cause::kOtherMinimum: return texts(Text::kCauseOtherMinimum);
        case Cause::kGeometry: return DescribeGeometry(warning.geometry, texts, style);
        case Cause::kNone: break;
    }
    return {};
}

std::string Count(double value) { return FixedText(value, 0); }

std::string Superscript(int number) {
    constexpr std::array kDigits{"⁰", "¹", "²", "³", "⁴", "⁵", "⁶", "⁷", "⁸", "⁹"};
    std::string text;
    for (const char digit : std::to_string(number)) {
        text += digit == '-' ? "⁻" : kDigits[static_cast<std::size_t>(digit - '0')];
    }
    return text;
}

struct Names {
    Id id;
    const char* code;
    const char* name;
};

constexpr std::array kNames{Names{Id::kNotChecked, "W0", "not_checked"},
                            Names{Id::kInexact, "W1", "inexact"},
                            Names{Id::kUndetermined, "W2", "undetermined"},
                            Names{Id::kNoRedundancy, "W3", "no_redundancy"},
                            Names{Id::kWeak, "W3a", "weak"},
                            Names{Id::kFold, "W4", "fold"},
                            Names{Id::kNearFold, "W4", "near_fold"},
                            Names{Id::kBetween, "W5", "between"},
                            Names{Id::kRecord, "W6", "record"},
                            Names{Id::kExtrapolation, "W7", "extrapolation"},
                            Names{Id::kOutlier, "W8", "outlier"},
                            Names{Id::kGlobalTest, "W9", "global_test"},
                            Names{Id::kOrder, "W10", "order"}};

const Names& NamesOf(Id id) { return kNames[static_cast<std::size_t>(id)]; }

/// The word of a member of an enumeration whose members are counted from 0.
template <std::size_t count>
const char* WordOf(const std::array<const char*, count>& words, auto member) {
    return words.at(static_cast<std::size_t>(member));
}

}  // namespace

std::string CodeOf(const Warning& warning) {
    const bool isNote = warning.severity == Warning::Severity::kNote;
    if (isNote && warning.id == Id::kInexact) return "N1";
    if (isNote && warning.id == Id::kBetween) return "N2";
    return NamesOf(warning.id).code;
}

const char* NameOf(Id id) { return NamesOf(id).name; }

const char* NameOf(Warning::Severity severity) {
    return WordOf(std::array{"note", "warning", "severe"}, severity);
}

const char* NameOf(Cause cause) {
    return WordOf(std::array{"", "origin", "conditioned", "iteration", "other_minimum", "geometry"},
                  cause);
}

const char* NameOf(Warning::Offer offer) {
    return WordOf(std::array{"", "accurate", "type", "exclude", "delete_excluded"}, offer);
}

const char* NameOf(TruthCheck::Level level) {
    return WordOf(std::array{"verified", "note", "warning", "severe"}, level);
}

const char* NameOf(WeakGeometry::Kind kind) {
    return WordOf(std::array{"", "places", "curve", "groups", "few_points", "spread"}, kind);
}

std::string FigureText(double value, NumberStyle style) {
    if (!std::isfinite(value)) return "–";
    if (value == 0.0) return "0";
    const int exponent = DecimalExponent(std::abs(value));
    constexpr int kMostDigits = 6;
    if (exponent >= kMostDigits || exponent < -4) {
        const double mantissa = value / PowerOfTen(exponent);
        return FixedText(mantissa, 1, style) + "·10" + Superscript(exponent);
    }
    return FixedText(value, std::max(0, 1 - exponent), style);
}

std::string DescribeGeometry(const WeakGeometry& geometry, const TextLookup& texts,
                             NumberStyle style) {
    using Kind = WeakGeometry::Kind;
    const std::string distance = FigureText(geometry.distance, style);
    switch (geometry.kind) {
        case Kind::kNone: return {};
        case Kind::kTooFewPlaces:
            return FillPlaces(texts(Text::kCausePlaces),
                              {std::to_string(geometry.count), std::to_string(geometry.needed)});
        case Kind::kCurve:
            return FillPlaces(texts(geometry.order == 1   ? Text::kCauseLine
                                    : geometry.order == 2 ? Text::kCauseConic
                                                          : Text::kCauseCurve),
                              {distance, std::to_string(geometry.order)});
        case Kind::kGroups:
            return FillPlaces(texts(Text::kCauseGroups), {std::to_string(geometry.count)});
        case Kind::kFewPoints: return texts(Text::kCauseFewPoints);
        case Kind::kSpread: return texts(Text::kCauseSpread);
    }
    return {};
}

std::string DescribeWarning(const Warning& warning, const TextLookup& texts, NumberStyle style) {
    const auto figure = [&](const char* name) { return FigureText(warning.Value(name), style); };
    const auto two = [&](const char* name) { return FixedText(warning.Value(name), 2, style); };
    const std::string cause = CauseText(warning, texts, style);
    const auto place = warning.place.value_or(Point{});
    const std::string first = FixedText(place.first, 3, style);
    const std::string second = FixedText(place.second, 3, style);
    const auto name = [&](const std::optional<Type>& type) {
        return type ? TypeName(*type, texts) : std::string();
    };
    switch (warning.id) {
        case Id::kNotChecked: return texts(Text::kWarnNotChecked);
        case Id::kInexact:
            return FillPlaces(texts(Text::kWarnInexact),
                              {figure("error_m"), figure("error_at_points_m"), cause});
        case Id::kUndetermined:
            return FillPlaces(
                texts(Text::kWarnUndetermined),
                {cause, Count(warning.Value("arbitrary")), Count(warning.Value("unknowns"))});
        case Id::kNoRedundancy: return texts(Text::kWarnNoRedundancy);
        case Id::kWeak:
            return FillPlaces(
                texts(std::isfinite(warning.Value("detectable_m")) ? Text::kWarnWeak
                                                                   : Text::kWarnUncontrolled),
                {warning.identifier, figure("detectable_m")});
        case Id::kFold: return FillPlaces(texts(Text::kWarnFold), {first, second});
        case Id::kNearFold: return FillPlaces(texts(Text::kWarnNearFold), {first, second});
        case Id::kBetween:
            if (!std::isfinite(warning.Value("sigma_m"))) {
                return FillPlaces(texts(Text::kWarnBetweenFactor),
                                  {figure("factor"), first, second, cause});
            }
            return FillPlaces(texts(Text::kWarnBetween), {figure("sigma_m"), first, second, cause});
        case Id::kRecord: return FillPlaces(texts(Text::kWarnRecord), {figure("error_m")});
        case Id::kExtrapolation:
            return FillPlaces(
                texts(Text::kWarnExtrapolation),
                {Count(warning.Value("count")), figure("farthest_m"), figure("sigma_m")});
        case Id::kOutlier:
            return FillPlaces(texts(Text::kWarnOutlier),
                              {warning.identifier, figure("error_m"), figure("p")});
        case Id::kGlobalTest:
            return FillPlaces(texts(Text::kWarnGlobalTest),
                              {two("ratio"), two("lower"), two("upper")});
        case Id::kOrder:
            return FillPlaces(texts(Text::kWarnOrder),
                              {name(warning.type), name(warning.offeredType),
                               figure("leave_one_out_m"), figure("advised_leave_one_out_m")});
    }
    return {};
}

std::string DescribeOffer(const Warning& warning, const TextLookup& texts) {
    switch (warning.offer) {
        case Warning::Offer::kNone: return {};
        case Warning::Offer::kAccurate: return texts(Text::kOfferAccurate);
        case Warning::Offer::kType:
            if (!warning.offeredType) return {};
            return FillPlaces(texts(Text::kOfferType), {TypeName(*warning.offeredType, texts)});
        case Warning::Offer::kExclude:
            return FillPlaces(texts(Text::kOfferExclude), {warning.identifier});
        case Warning::Offer::kDeleteExcluded: return texts(Text::kOfferDeleteExcluded);
    }
    return {};
}

std::string DescribeCheck(const TruthCheck& check, const TextLookup& texts, NumberStyle style) {
    return FillPlaces(texts(Text::kChecked), {FigureText(check.errorInHull, style)});
}

}  // namespace kv_tr
