// Parameter files, JSON records, PROJ strings and world files: what is written reads back the same.
#include <sstream>

#include "fuzz/fuzz.h"
#include "kv_tr/files/parameter_file.h"
#include "kv_tr/files/parameter_listing.h"
#include "kv_tr/interchange/transformation_export.h"
#include "kv_tr/interchange/transformation_import.h"
#include "kv_tr/model/point_map.h"

namespace kv_tr::test {
namespace {

void CheckFinite(const Transformation& t) {
    for (const auto& series : {t.a, t.b}) {
        for (const double number : series) Require(std::isfinite(number), "what is read is finite");
    }
}

/// What a program saves of a transformation.
std::string Saved(const Transformation& t, ParameterFormat format, NumberStyle style) {
    if (format == ParameterFormat::kPolynomial) return ListPolynomial(t, "title", style);
    const auto order =
        format == ParameterFormat::kItr25 ? LinearFormat::kItr25 : LinearFormat::kNative;
    std::string text;
    for (const std::string& line : LinearFileLines(t, order, style)) text += line + "\r\n";
    return text;
}

void CheckParameterFile(std::string_view bytes, ParameterFormat format, Input& input) {
    const Type linear = input.Flag() ? Type::kHelmert : Type::kAffine;
    const ParameterFileStyle style{.codePage = static_cast<CodePage>(input.Below(2)),
                                   .numbers = {input.Flag() ? ',' : '.'},
                                   .suspectCommas = static_cast<SuspectCommas>(input.Below(3))};
    const auto read = [&](const std::string& text) {
        std::istringstream stream(text);
        return ReadParameters(stream, format, linear, style);
    };
    const ParameterReading first = read(std::string(bytes));
    if (!first.Complete()) {
        Require(first.problem->line <= LineCount(bytes) + 1, "the line of the problem exists");
        return;
    }
    CheckFinite(first.transformation);
    const std::string saved = Saved(first.transformation, format, style.numbers);
    if (saved.find("inf") != saved.npos || saved.find("E+308") != saved.npos) return;
    const ParameterReading second = read(saved);
    Require(second.Complete(), "what is saved can be loaded");
    Require(Saved(second.transformation, format, style.numbers) == saved,
            "what is loaded is saved as it was");
}

void CheckRecord(std::string_view text, TransformationFormat format, Type linear) {
    const ImportedTransformation read = ReadTransformation(text, format, linear);
    if (!read.Complete()) {
        Require(read.problem->line <= LineCount(text) + 1, "the line of the problem exists");
        (void)ProblemText(*read.problem, TextsIn(kEnglish));
        return;
    }
    CheckFinite(read.record.transformation);
    for (const TransformationFormat other : TransformationFormats()) {
        const Exported exported = ExportTransformation(read.record, other);
        if (const auto* refusal = std::get_if<Refusal>(&exported)) {
            Require(!RefusalText(*refusal, read.record.transformation, other, TextsIn(kEnglish))
                         .empty(),
                    "a refusal has a reason");
            continue;
        }
        const auto& written = std::get<std::string>(exported);
        using enum TransformationFormat;
        if (other == kJson) {
            const ImportedTransformation again = ReadTransformation(written, other, linear);
            Require(again.Complete() && again.record == read.record, "a record reads back whole");
        } else if (other == kProj || other == kProjHelmert) {
            const ImportedTransformation again = ReadTransformation(written, other, linear);
            Require(again.Complete(), "a PROJ string of ours can be read");
            const Point at{600000.5, 200000.25};
            const Transformation& one = read.record.transformation;
            if (other == kProj && IsPolynomial(one.type) &&
                again.record.sourceAxes == read.record.sourceAxes)
                Require(Same(one.Apply(at), again.record.transformation.Apply(at)),
                        "and gives the same points");
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const int kind = input.Byte();
    if (kind < 64) {  // line ends and blanks, as files that serve as seeds end with
        const std::string_view text = input.Rest();
        for (const ParameterFormat format :
             {ParameterFormat::kNative, ParameterFormat::kPolynomial}) {
            Input none(nullptr, 0);
            CheckParameterFile(text, format, none);
        }
        if (const auto format = FormatOfText(text)) CheckRecord(text, *format, Type::kAffine);
    } else if (kind < 160) {
        const Type linear = kind % 2 == 0 ? Type::kHelmert : Type::kAffine;
        using enum TransformationFormat;
        for (const auto format : {kJson, kProj, kProjHelmert, kWorldFile, kGeotransform})
            CheckRecord(input.Rest(), format, linear);
    } else {
        const auto format = static_cast<ParameterFormat>(kind % 3);
        Input flags(data, size);
        flags.Take(1);
        const std::string_view options = flags.Take(4);
        Input taken(reinterpret_cast<const std::uint8_t*>(options.data()), options.size());
        CheckParameterFile(flags.Rest(), format, taken);
    }
    return 0;
}

}  // namespace kv_tr::test
