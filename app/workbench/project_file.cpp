// Projects as files: JSON that keeps every digit.
#include "workbench/project_file.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

#include "kv_tr/files/report_file.h"
#include "kv_tr/model/type_name.h"
#include "kv_tr/text/number_text.h"
#include "kv_tr/text/paths.h"
#include "workbench/json_place.h"
#include "workbench/saving.h"
#include "workbench/texts/said.h"

namespace kv_tr::workbench {
namespace {

using Json = nlohmann::json;
using Kind = ProjectProblem::Kind;

constexpr const char* kFormat = "kv_tr-project";
constexpr std::int64_t kVersion = 1;
constexpr const char* kDocumentedWord = "documented";
constexpr const char* kAccurateWord = "accurate";

// Writing. The library's own writer of numbers does not promise the shortest text.

std::string Quoted(const std::string& text) {
    return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string PointJson(Point point) {
    return "[" + ShortestText(point.first) + ", " + ShortestText(point.second) + "]";
}

std::string SystemJson(const System& system) {
    return "{\"name\": " + Quoted(system.name) +
           ", \"axes\": " + Quoted(std::string(AxisWord(system.axes))) +
           ", \"crs\": " + Quoted(system.crs) + "}";
}

std::string OriginJson(const Origin& origin) {
    return "{\"file\": " + Quoted(origin.file) + ", \"sha256\": " + Quoted(origin.checksum) +
           ", \"edited\": " + (origin.isEdited ? "true" : "false") + "}";
}

void AddPair(std::string& text, const ControlPoint& point, Point sigma, const std::string& note) {
    text += "{\"id\": " + Quoted(point.id) + ", \"source\": " + PointJson(point.source) +
            ", \"destination\": " + PointJson(point.destination);
    if (sigma != Point{}) text += ", \"sigma\": " + PointJson(sigma);
    if (!point.used) text += ", \"used\": false";
    if (!note.empty()) text += ", \"note\": " + Quoted(note);
    text += "}";
}

// Reading.

/// Thrown out of the reading of a project.
struct Wrong {
    Kind kind;
    std::string member;
};

/// An object whose members are taken one by one, by name.
class Members {
public:
    Members(const Json& json, std::string name) : json_(json), name_(std::move(name)) {
        if (!json.is_object()) throw Wrong{Kind::kUnsuitable, name_};
    }

    std::string NameOf(const std::string& member) const {
        return name_.empty() ? member : name_ + "." + member;
    }
    const Json& Get(const char* member) const {
        const auto found = json_.find(member);
        if (found != json_.end()) return *found;
        throw Wrong{Kind::kMissing, NameOf(member)};
    }
    template <class Value>
    Value Get(const char* member) const {
        const Json& json = Get(member);
        if (!Is<Value>(json)) throw Wrong{Kind::kUnsuitable, NameOf(member)};
        return json.get<Value>();
    }
    template <class Value>
    Value Get(const char* member, Value otherwise) const {
        return json_.contains(member) ? Get<Value>(member) : otherwise;
    }
    Point PointOf(const char* member) const {
        const Json& json = Get(member);
        const auto isNumber = [](const Json& one) { return one.is_number(); };
        if (!json.is_array() || json.size() != 2 || !std::ranges::all_of(json, isNumber))
            throw Wrong{Kind::kUnsuitable, NameOf(member)};
        return {json[0].get<double>(), json[1].get<double>()};
    }
    void ExpectThat(bool good, const char* member) const {
        if (!good) throw Wrong{Kind::kUnsuitable, NameOf(member)};
    }
    /// No member may have another name.
    void ExpectOnly(std::initializer_list<const char*> members) const {
        for (const auto& item : json_.items()) {
            const std::string& name = item.key();
            const auto isName = [&name](const char* one) { return name == one; };
            if (std::ranges::none_of(members, isName)) throw Wrong{Kind::kUnknown, NameOf(name)};
        }
    }

private:
    template <class Value>
    static bool Is(const Json& json) {
        if constexpr (std::is_same_v<Value, bool>) return json.is_boolean();
        if constexpr (std::is_same_v<Value, double>) return json.is_number();
        if constexpr (std::is_same_v<Value, std::int64_t>) return json.is_number_integer();
        if constexpr (std::is_same_v<Value, std::string>) return json.is_string();
    }

    const Json& json_;
    std::string name_;
};

System SystemOf(const Members& project, const char* name) {
    const Members members(project.Get(name), name);
    members.ExpectOnly({"name", "axes", "crs"});
    const auto axes = AxesNamed(members.Get<std::string>("axes"));
    members.ExpectThat(axes.has_value(), "axes");
    return {members.Get<std::string>("name"), *axes, members.Get<std::string>("crs")};
}

const Json& ArrayOf(const Members& project, const char* name) {
    const Json& array = project.Get(name);
    project.ExpectThat(array.is_array(), name);
    return array;
}

std::string ElementName(const char* array, std::size_t index) {
    return std::string(array) + "[" + std::to_string(index) + "]";
}

Origin OriginOf(const Json& json, std::size_t index) {
    const Members members(json, ElementName("files", index));
    members.ExpectOnly({"file", "sha256", "edited"});
    return {members.Get<std::string>("file"), members.Get<std::string>("sha256"),
            members.Get<bool>("edited")};
}

Pair PairOf(const Json& json, std::size_t index) {
    const Members members(json, ElementName("points", index));
    members.ExpectOnly({"id", "source", "destination", "sigma", "used", "note"});
    Pair pair;
    pair.point = {members.Get<std::string>("id"), members.PointOf("source"),
                  members.PointOf("destination"), members.Get("used", true)};
    pair.note = members.Get("note", std::string());
    if (json.contains("sigma")) {
        pair.sigma = members.PointOf("sigma");
        members.ExpectThat(pair.sigma.first > 0 && pair.sigma.second > 0, "sigma");
    }
    return pair;
}

bool CanBeFitted(std::int64_t number) {
    return number >= NumberOf(Type::kAffine5) && number <= NumberOf(Type::kBilinear);
}

Content ContentOf(const Json& json) {
    if (!json.is_object() || json.value("format", Json()) != kFormat)
        throw Wrong{Kind::kNoProject, {}};
    const Members members(json, {});
    const auto version = members.Get<std::int64_t>("version");
    if (version > kVersion) throw Wrong{Kind::kNewer, std::to_string(version)};
    members.ExpectThat(version == kVersion, "version");
    members.ExpectOnly({"format", "version", "program", "type", "type_name", "solution", "limit",
                        "alpha", "swapped", "source", "destination", "files", "points"});
    Content content;
    Settings& settings = content.settings;
    const auto type = members.Get<std::int64_t>("type");
    members.ExpectThat(CanBeFitted(type), "type");
    settings.type = static_cast<Type>(type);
    const auto solution = members.Get<std::string>("solution");
    members.ExpectThat(solution == kDocumentedWord || solution == kAccurateWord, "solution");
    if (solution == kAccurateWord) settings.solution = Solution::kAccurate;
    settings.limit = members.Get<double>("limit");
    members.ExpectThat(settings.limit >= 0, "limit");
    settings.alpha = members.Get<double>("alpha");
    members.ExpectThat(settings.alpha > 0 && settings.alpha < 1, "alpha");
    content.isSwapped = members.Get<bool>("swapped");
    settings.source = SystemOf(members, "source");
    settings.destination = SystemOf(members, "destination");
    for (const Json& file : ArrayOf(members, "files"))
        settings.origins.push_back(OriginOf(file, settings.origins.size()));
    for (const Json& point : ArrayOf(members, "points"))
        content.pairs.push_back(PairOf(point, content.pairs.size()));
    return content;
}

ReadProject Refused(Kind kind, JsonPlace place, std::string member = {}) {
    return {.problem = {kind, place.line, place.column, std::move(member)}};
}

/// The place of a member, or of what it should be part of.
JsonPlace NearestPlace(std::string_view text, std::string member) {
    for (;;) {
        const JsonPlace place = PlaceOfMember(text, member);
        const auto end = member.find_last_of('.');
        if (place.line > 0 || end == member.npos) return place;
        member.resize(end);
    }
}

}  // namespace

std::string ProjectText(const Document& document) {
    const Settings& settings = document.Current();
    const bool isAccurate = settings.solution == Solution::kAccurate;
    const std::pair<const char*, std::string> members[] = {
        {"format", Quoted(kFormat)},
        {"version", std::to_string(kVersion)},
        {"program", Quoted(ReportingProgram())},
        {"type", std::to_string(NumberOf(settings.type))},
        {"type_name", Quoted(TypeName(settings.type, TextsIn(kEnglish)))},
        {"solution", Quoted(isAccurate ? kAccurateWord : kDocumentedWord)},
        {"limit", ShortestText(settings.limit)},
        {"alpha", ShortestText(settings.alpha)},
        {"swapped", document.IsSwapped() ? "true" : "false"},
        {"source", SystemJson(settings.source)},
        {"destination", SystemJson(settings.destination)},
    };
    std::string text = "{\n";
    for (const auto& [name, value] : members) text += "  " + Quoted(name) + ": " + value + ",\n";
    const char* next = "\n    ";
    text += "  \"files\": [";
    for (const Origin& origin : settings.origins) {
        text += std::exchange(next, ",\n    ") + OriginJson(origin);
    }
    text += "],\n  \"points\": [";
    next = "\n    ";
    for (std::size_t i = 0; i < document.Count(); ++i) {
        text += std::exchange(next, ",\n    ");
        AddPair(text, document.PointAt(i), document.SigmaAt(i), document.NoteAt(i));
    }
    return text + "]\n}\n";
}

ReadProject ProjectOf(std::string_view text) {
    try {
        Content content = ContentOf(Json::parse(text));
        auto [twice, place] = FindRepeated(text);
        if (!twice.empty()) return Refused(Kind::kRepeated, place, std::move(twice));
        return {.content = std::move(content)};
    } catch (const Wrong& wrong) {
        if (wrong.kind == Kind::kNoProject) return Refused(wrong.kind, {});
        const bool isNewer = wrong.kind == Kind::kNewer;
        return Refused(wrong.kind, NearestPlace(text, isNewer ? "version" : wrong.member),
                       wrong.member);
    } catch (const Json::exception&) {
        return Refused(Kind::kNoJson, PlaceOfFault(text));
    }
}

ReadProject ProjectOfFile(const std::string& fileName) {
    std::error_code error;
    const bool isFile = std::filesystem::is_regular_file(PathOf(fileName), error);
    std::ifstream file = OpenToRead(PathOf(fileName));
    if (!isFile || !file) return Refused(Kind::kNotOpened, {});
    if (std::filesystem::file_size(PathOf(fileName), error) > kMostBytes)
        return Refused(Kind::kTooLarge, {});
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    return file.bad() ? Refused(Kind::kNotOpened, {}) : ProjectOf(bytes);
}

std::string SaveProject(const Document& document, const std::string& fileName) {
    return SaveText(ProjectText(document), fileName);
}

std::string Complaint(const ProjectProblem& problem, const std::string& fileName) {
    const auto reason = [&]() -> std::string {
        switch (problem.kind) {
            case Kind::kNone: break;
            case Kind::kNotOpened: return Said(Phrase::kProjectNotOpened);
            case Kind::kTooLarge: return Said(Phrase::kProjectTooLarge);
            case Kind::kNoJson: return Said(Phrase::kProjectNoJson);
            case Kind::kNoProject: return Said(Phrase::kProjectNone);
            case Kind::kNewer: return Said(Phrase::kProjectNewer, {problem.member});
            case Kind::kUnknown: return Said(Phrase::kProjectUnknown, {problem.member});
            case Kind::kRepeated: return Said(Phrase::kProjectRepeated, {problem.member});
            case Kind::kMissing: return Said(Phrase::kProjectMissing, {problem.member});
            case Kind::kUnsuitable: return Said(Phrase::kProjectUnsuitable, {problem.member});
        }
        return {};
    };
    if (problem.line == 0) return fileName + ": " + reason();
    return Said(Phrase::kProjectPlace,
                {fileName, std::to_string(problem.line), std::to_string(problem.column), reason()});
}

}  // namespace kv_tr::workbench
