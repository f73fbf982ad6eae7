// What the dialogs of parameters put on the clipboard for other programs.
#include "kv_tr/forms/copied_text.h"

#include <array>

#include "kv_tr/interchange/transformation_export.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"

namespace kv_tr {

std::span<const TransformationFormat> CopiedFormats() {
    using enum TransformationFormat;
    static constexpr std::array kFormats{kProj,      kProjHelmert,  kWkt2,     kJson,
                                         kWorldFile, kGeotransform, kFormulas, kSpreadsheet,
                                         kC,         kPython,       kSql};
    return kFormats;
}

std::string CopiedText(const Transformation& transformation, TransformationFormat format) {
    const auto exported =
        ExportTransformation({.transformation = transformation}, format, ComponentNumberStyle());
    if (const auto* refusal = std::get_if<Refusal>(&exported)) {
        ShowMessage(RefusalText(*refusal, transformation, format, ComponentTexts()),
                    Icon::kExclamation);
        return {};
    }
    return std::get<std::string>(exported);
}

}  // namespace kv_tr
