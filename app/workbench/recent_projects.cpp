// The projects that were open last, each with a small picture of its points.
#include "workbench/recent_projects.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <utility>

#include "kv_tr/text/number_text.h"
#include "kv_tr/text/paths.h"
#include "workbench/saving.h"

namespace kv_tr::workbench {
namespace fs = std::filesystem;
namespace {

using Json = nlohmann::json;

constexpr const char* kListName = "recent.json";

std::string WholePath(const std::string& fileName) {
    std::error_code error;
    const fs::path path = fs::absolute(PathOf(fileName), error);
    return error ? fileName : NameOfPath(path);
}

}  // namespace

RecentProjects::RecentProjects(fs::path folder) : folder_(std::move(folder)) {}

std::vector<RecentProject> RecentProjects::List() const {
    std::vector<RecentProject> projects;
    std::ifstream file = OpenToRead(folder_ / kListName);
    const Json list = Json::parse(file, nullptr, false);
    if (!list.is_array()) return projects;
    for (const Json& one : list) {
        if (!one.is_object()) continue;
        const auto text = [&one](const char* member) {
            const auto found = one.find(member);
            return found != one.end() && found->is_string() ? found->get<std::string>() : "";
        };
        const auto points = one.find("points");
        const bool isCount = points != one.end() && points->is_number_unsigned();
        projects.push_back(
            {text("file"), text("picture"), isCount ? points->get<std::size_t>() : 0});
        if (projects.back().file.empty()) projects.pop_back();
    }
    return projects;
}

void RecentProjects::Add(Document& document, const std::string& fileName) {
    auto projects = List();
    const std::string path = WholePath(fileName);
    std::erase_if(projects, [&path](const RecentProject& one) { return one.file == path; });
    projects.insert(projects.begin(), {path, SmallPicture(document), document.Count()});
    if (projects.size() > kMost) projects.resize(kMost);
    Write(projects);
}

void RecentProjects::Remove(const std::string& fileName) {
    auto projects = List();
    std::erase_if(projects, [path = WholePath(fileName)](const RecentProject& one) {
        return one.file == path;
    });
    Write(projects);
}

/// A list that cannot be written is no reason to disturb anybody.
void RecentProjects::Write(const std::vector<RecentProject>& projects) const {
    if (folder_.empty()) return;
    std::error_code error;
    fs::create_directories(folder_, error);
    fs::permissions(folder_, fs::perms::owner_all, error);
    Json list = Json::array();
    for (const auto& [file, picture, points] : projects)
        list.push_back({{"file", file}, {"picture", picture}, {"points", points}});
    SaveText(list.dump(1, ' ', false, Json::error_handler_t::replace) + "\n",
             NameOfPath(folder_ / kListName));
}

std::string SmallPicture(Document& document) {
    constexpr double kWidth = 160;
    constexpr double kHeight = 120;
    constexpr double kMargin = 8;
    constexpr std::size_t kMostPoints = 400;  // every second, third, ... of more
    const auto extent = document.Adjusted().DestinationExtent();
    std::string svg = R"(<svg xmlns="http://www.w3.org/2000/svg" width="160" height="120">)";
    if (extent && document.Count() > 0) {
        const auto& [least, greatest] = *extent;
        const double metres =
            std::max({(greatest.first - least.first) / (kWidth - 2 * kMargin),
                      (greatest.second - least.second) / (kHeight - 2 * kMargin), 1e-9});
        const double left = (kWidth - (greatest.first - least.first) / metres) / 2;
        const double bottom = (kHeight + (greatest.second - least.second) / metres) / 2;
        const std::size_t step = (document.Count() + kMostPoints - 1) / kMostPoints;
        for (std::size_t i = 0; i < document.Count(); i += step) {
            const auto& [id, source, destination, used] = document.PointAt(i);
            const double x = left + (destination.first - least.first) / metres;
            const double y = bottom - (destination.second - least.second) / metres;
            if (!std::isfinite(x) || !std::isfinite(y)) continue;
            const double residual = document.Adjusted().Residuals()[i].Length();
            const char* look = !used ? R"(fill="none" stroke="#888")"
                               : document.HasFit() && !(residual <= document.Limit())
                                   ? R"(fill="#c33" stroke="#c33" stroke-width="2")"
                                   : R"(fill="#369")";
            svg += R"(<circle cx=")" + FixedText(x, 1) + R"(" cy=")" + FixedText(y, 1) +
                   R"(" r="2.5" )" + look + "/>";
        }
    }
    return svg + "</svg>";
}

}  // namespace kv_tr::workbench
