// Transformations out of the formats of other programs.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "kv_tr/interchange/transformation_format.h"
#include "kv_tr/interchange/transformation_record.h"
#include "kv_tr/text/texts.h"

namespace kv_tr {

/// Why a text gives no transformation.
struct ImportProblem {
    enum class Kind {
        kNoJson,       ///< at this line and column, both from 1
        kUnsuitable,   ///< this member or option is missing, or not as it should be
        kNewer,        ///< the record has this version
        kUnsupported,  ///< this step or option means more than a plane transformation of ours
        kSixNumbers,   ///< not six numbers
        kNotFinite,    ///< a number is beyond the range of a double
    };

    Kind kind = Kind::kUnsuitable;
    std::size_t line = 0;
    std::size_t column = 0;
    std::string text{};

    bool operator==(const ImportProblem&) const = default;
};

/// A transformation with what its text tells about it, or the first thing that is wrong.
struct ImportedTransformation {
    TransformationRecord record;
    std::optional<ImportProblem> problem{};

    bool Complete() const { return !problem; }
};

/// The format that a text shows to be in: kJson, kProj or kGeotransform (six numbers in brackets);
/// nothing for any other text, world files among them, which are plain numbers.
std::optional<TransformationFormat> FormatOfText(std::string_view text);

/// Whether a name ends as those of world files do: .wld, .tfw, .jgw, .pgw, ...
bool IsWorldFileName(const std::string& fileName);

/// Reads a transformation: kJson, kProj, kProjHelmert, kWorldFile or kGeotransform; any other
/// format is std::invalid_argument. Six numbers get the linear type.
///
/// Of PROJ these are read: affine, helmert with +theta, horner of the orders 1 to 5 with real
/// coefficients, each alone or between two steps axisswap, which become the axes of the record. An
/// inverted step is refused, as its coefficients would be rounded.
ImportedTransformation ReadTransformation(std::string_view text, TransformationFormat format,
                                          Type linearType = Type::kAffine);

/// What is wrong, as a part of a sentence in a language.
std::string ProblemText(const ImportProblem& problem, const TextLookup& texts);

}  // namespace kv_tr
