// Parameter files, read whole or not at all.
#include "common/parameter_reading.h"

#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/parameter_file.h"
#include "kv_tr/text/file_names.h"

namespace kv_tr::host {
namespace {

ParameterReading ReadLinear(const std::string& fileName, enuTR_TYPE type) {
    clsFile file;
    file.OpenIt(fileName, true);
    if (!file.IsOpen()) return {};
    const auto format =
        HasExtension(fileName, "prm") ? LinearFormat::kItr25 : LinearFormat::kNative;
    TR_PRM record{.eType = type};
    if (ReadLinearFile(file, format, record)) return {record, {}};
    return {{}, FillPlaces(GetMlString(1070, "{0}: hat számnak kell benne lennie."), {fileName})};
}

ParameterReading ReadPolynomial(const std::string& fileName) {
    TR_PRM record;
    const PolynomialReading reading = ReadPolynomialFile(fileName, record);
    if (!reading.opened) return {};
    if (reading.badLine != 0) {
        return {
            {},
            FillPlaces(GetMlString(1060, "{0}: a(z) {1}. sortól kezdve nem olvasható teljesen."),
                       {fileName, std::to_string(reading.badLine)})};
    }
    if (reading.accepted) return {record, {}};
    return {
        {},
        FillPlaces(GetMlString(1067, "{0}: a sorok száma egyik polinomtípusé sem."), {fileName})};
}

}  // namespace

ParameterReading ReadParameters(const std::string& fileName, enuTR_TYPE linearType) {
    return HasExtension(fileName, "all") ? ReadPolynomial(fileName)
                                         : ReadLinear(fileName, linearType);
}

}  // namespace kv_tr::host
