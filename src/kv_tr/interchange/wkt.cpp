// Six parameters as a coordinate operation of WKT 2.
#include <algorithm>
#include <cctype>

#include "kv_tr/interchange/format_writers.h"

namespace kv_tr {
namespace {

/// The text without its quoted parts.
std::string Unquoted(std::string_view wkt) {
    std::string text;
    bool quoted = false;
    for (const char c : wkt) {
        if (c == '"') {
            quoted = !quoted;
        } else if (!quoted) {
            text += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        }
    }
    std::erase_if(text, [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
    return text;
}

/// Whether a name of a system is its whole WKT 2, as PROJCRS[...].
bool IsWkt(const std::string& system) {
    const std::string text = Unquoted(system);
    const auto bracket = std::min(text.find_first_of("[("), text.size());
    return bracket < text.size() && text.substr(0, bracket).ends_with("CRS");
}

/// The directions of the two axes that the WKT of a system states; nothing where it states others
/// than those of the compass.
std::optional<AxisMapping> StatedAxes(const std::string& wkt) {
    const std::string text = Unquoted(wkt);
    std::string word;
    std::size_t at = 0;
    for (int axis = 0; axis < 2; ++axis) {
        at = text.find("AXIS[,", at);
        if (at == text.npos) return std::nullopt;
        at += std::string_view("AXIS[,").size();
        const auto direction = text.substr(at, text.find_first_of(",]", at) - at);
        constexpr std::string_view kDirections[] = {"EAST", "NORTH", "WEST", "SOUTH"};
        if (std::ranges::find(kDirections, direction) == std::end(kDirections)) return std::nullopt;
        word += static_cast<char>(std::tolower(static_cast<unsigned char>(direction.front())));
    }
    return AxesNamed(word);
}

std::string MethodText(const Transformation& t, const std::string& lineEnd) {
    struct Parameter {
        const char* name;
        double value;
        const char* unit;
        int code;
    };
    constexpr const char* kMetre = R"(LENGTHUNIT["metre",1])";
    constexpr const char* kFactor = R"(SCALEUNIT["coefficient",1])";
    const Parameter parameters[] = {{"A0", t.a[0], kMetre, 8623},  {"A1", t.a[1], kFactor, 8624},
                                    {"A2", t.a[2], kFactor, 8625}, {"B0", t.b[0], kMetre, 8639},
                                    {"B1", t.b[1], kFactor, 8640}, {"B2", t.b[2], kFactor, 8641}};
    std::string text = R"(METHOD["Affine parametric transformation",ID["EPSG",9624]])";
    for (const Parameter& parameter : parameters) {
        text += lineEnd + R"(PARAMETER[")" + parameter.name + R"(",)" +
                ShortestText(parameter.value) + "," + parameter.unit + R"(,ID["EPSG",)" +
                std::to_string(parameter.code) + "]]";
    }
    return text;
}

}  // namespace

/// The parameters belong to the coordinates in the order of the systems' own axes, so that those of
/// the record are not applied; they must not contradict the systems.
Exported WktText(const TransformationRecord& record) {
    const bool whole = IsWkt(record.sourceCrs) && IsWkt(record.targetCrs);
    const std::string lineEnd = whole ? ",\n    " : ",\n";
    std::string text = MethodText(record.transformation, lineEnd);
    if (record.fit && record.fit->sigma0) {
        text += lineEnd + "OPERATIONACCURACY[" + ShortestText(*record.fit->sigma0) + "]";
    }
    if (!whole) return text + "\n";
    for (const auto& [wkt, axes] : {std::pair(record.sourceCrs, record.sourceAxes),
                                    std::pair(record.targetCrs, record.targetAxes)}) {
        if (StatedAxes(wkt).value_or(axes) != axes) return Refusal::kOtherAxes;
    }
    return R"(COORDINATEOPERATION["Plane transformation")" + lineEnd + "SOURCECRS[" +
           record.sourceCrs + "]" + lineEnd + "TARGETCRS[" + record.targetCrs + "]" + lineEnd +
           text + "]\n";
}

}  // namespace kv_tr
