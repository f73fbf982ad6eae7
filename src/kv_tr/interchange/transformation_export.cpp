// Transformations in the formats of other programs.
#include "kv_tr/interchange/transformation_export.h"

#include <algorithm>
#include <cmath>

#include "kv_tr/interchange/format_writers.h"
#include "kv_tr/model/elementary.h"
#include "kv_tr/model/type_name.h"

namespace kv_tr {
namespace {

using enum TransformationFormat;

bool IsFinite(const TransformationRecord& record) {
    const auto finite = [](double value) { return std::isfinite(value); };
    return std::ranges::all_of(record.transformation.a, finite) &&
           std::ranges::all_of(record.transformation.b, finite);
}

/// Whether b1 = -a2 and b2 = a1, up to rounding.
bool IsSimilarity(const Transformation& linear) {
    constexpr double kRounding = 1e-12;
    const double size = Hypotenuse(linear.a[1], linear.a[2]);
    return size > 0.0 && std::isfinite(size) &&
           std::abs(linear.b[1] + linear.a[2]) <= kRounding * size &&
           std::abs(linear.b[2] - linear.a[1]) <= kRounding * size;
}

bool HoldsLinearOnly(TransformationFormat format) {
    return format == kProjHelmert || format == kWkt2 || format == kWorldFile ||
           format == kGeotransform || format == kCadWorldFile;
}

Exported WrittenLinear(const TransformationRecord& record, TransformationFormat format) {
    const Transformation& own = record.transformation;
    const auto onMaps = BetweenMaps(own, record.sourceAxes, record.targetAxes);
    switch (format) {
        case kWorldFile: return WorldFileText(onMaps);
        case kGeotransform: return GeotransformText(onMaps);
        case kWkt2: return WktText(record);
        case kProjHelmert:
            return IsSimilarity(own) ? Exported(ProjHelmertText(record)) : Refusal::kNoSimilarity;
        default: break;
    }
    return IsSimilarity(onMaps) ? CadWorldFileText(record) : Refusal::kNoSimilarity;
}

}  // namespace

bool IsNamed(Type type) {
    return (type >= Type::kMetreToFathom && type <= Type::kBilinear) || IsNational(type);
}

Exported ExportTransformation(const TransformationRecord& record, TransformationFormat format,
                              NumberStyle sheetStyle) {
    if (!IsFinite(record)) return Refusal::kNotFinite;
    const Transformation& transformation = record.transformation;
    if (HoldsLinearOnly(format)) {
        if (IsPolynomial(transformation.type)) return Refusal::kNotLinear;
        return WrittenLinear(record, format);
    }
    switch (format) {
        case kProj: return ProjText(record);
        case kGdalGcps: return GcpsText(record);
        case kSpreadsheet: return SpreadsheetText(transformation, sheetStyle);
        case kC: return CText(transformation);
        case kPython: return PythonText(transformation);
        case kSql: return SqlText(transformation);
        case kFormulas: return FormulasText(transformation);
        default: break;
    }
    return IsNamed(transformation.type) ? Exported(JsonRecordText(record)) : Refusal::kUnnamedType;
}

std::string RefusalText(Refusal refusal, const Transformation& transformation,
                        TransformationFormat format, const TextLookup& texts) {
    const auto text = [refusal] {
        switch (refusal) {
            case Refusal::kNotLinear: return Text::kHoldsLinearOnly;
            case Refusal::kNoSimilarity: return Text::kHoldsSimilarityOnly;
            case Refusal::kNotFinite: return Text::kHoldsFiniteOnly;
            case Refusal::kUnnamedType: break;
            case Refusal::kNoPlaces: return Text::kNeedsTwoPlaces;
            case Refusal::kNoPoints: return Text::kNeedsPoints;
            case Refusal::kOtherAxes: return Text::kAxesContradictWkt;
        }
        return Text::kFormatCannotHold;
    };
    return FillPlaces(texts(text()),
                      {texts(FormatName(format)), TypeName(transformation.type, texts)});
}

}  // namespace kv_tr
