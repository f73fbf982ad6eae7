// The writers and readers of single formats, which ExportTransformation and ReadTransformation
// choose from. Not installed.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kv_tr/interchange/transformation_export.h"
#include "kv_tr/interchange/transformation_import.h"

namespace kv_tr {

/// Whether a type has a name, so that its number may travel.
bool IsNamed(Type type);

/// The powers of u and v in the terms 1, 2, 3, ... of a reduced type, in their order.
struct Powers {
    int ofU = 0;
    int ofV = 0;

    bool operator==(const Powers&) const = default;
};
std::vector<Powers> TermPowers(Type type);

// Each expects finite coefficients and a type that its format holds.
std::string JsonRecordText(const TransformationRecord& record);
std::string ProjText(const TransformationRecord& record);
std::string ProjHelmertText(const TransformationRecord& record);
Exported WktText(const TransformationRecord& record);
Exported WorldFileText(const Transformation& onMaps);
std::string GeotransformText(const Transformation& onMaps);
Exported CadWorldFileText(const TransformationRecord& record);
Exported GcpsText(const TransformationRecord& record);
std::string SpreadsheetText(const Transformation& transformation, NumberStyle style);
std::string CText(const Transformation& transformation);
std::string PythonText(const Transformation& transformation);
std::string SqlText(const Transformation& transformation);
std::string FormulasText(const Transformation& transformation);

ImportedTransformation ReadJsonRecord(std::string_view text);
ImportedTransformation ReadProj(std::string_view text, Type linearType);
ImportedTransformation ReadWorldFile(std::string_view text, Type linearType);
ImportedTransformation ReadGeotransform(std::string_view text, Type linearType);

}  // namespace kv_tr
