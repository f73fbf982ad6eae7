// What the start page offers, without a toolkit.
#include "workbench/start_form.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>

#include "kv_tr/text/paths.h"
#include "workbench/texts/said.h"

namespace kv_tr::workbench {
namespace fs = std::filesystem;
namespace {

std::string DayOf(fs::file_time_type time) {
    using std::chrono::system_clock;
    const auto onSystemClock =
        system_clock::now() +
        std::chrono::duration_cast<system_clock::duration>(time - fs::file_time_type::clock::now());
    const std::time_t seconds = system_clock::to_time_t(onSystemClock);
    std::tm parts{};
#ifdef _WIN32
    if (localtime_s(&parts, &seconds) != 0) return {};
#else
    if (localtime_r(&seconds, &parts) == nullptr) return {};
#endif
    char text[32];
    return {text, std::strftime(text, sizeof text, "%Y-%m-%d", &parts)};
}

std::string ShortPlace(const fs::path& folder) {
    const std::string home = Environment("HOME");
    std::string place = NameOfPath(folder);
    if (home.empty() || !place.starts_with(home)) return place;
    const std::string rest = place.substr(home.size());
    return rest.empty() || rest.front() == '/' ? "~" + rest : place;
}

RecentRow RecentRowOf(const std::string& file) {
    const fs::path path = PathOf(file);
    RecentRow row{
        .file = file, .name = NameOfPath(path.filename()), .place = ShortPlace(path.parent_path())};
    const auto time = LastChange(path);
    row.isMissing = !time;
    if (time) row.day = DayOf(*time);
    return row;
}

}  // namespace

std::vector<RecentRow> RecentRows(const std::vector<RecentProject>& projects,
                                  const std::vector<std::string>& files) {
    std::vector<RecentRow> rows;
    for (const RecentProject& project : projects) {
        rows.push_back(RecentRowOf(project.file));
        rows.back().picture = project.picture;
        rows.back().points = project.points;
    }
    for (const std::string& file : files) {
        if (std::ranges::find(rows, file, &RecentRow::file) == rows.end())
            rows.push_back(RecentRowOf(file));
    }
    return rows;
}

std::vector<Sample> SamplesFor(const std::string& programFolder) {
    constexpr int kLevels = 4;  // from a folder of the build up to the source tree
    constexpr std::pair<const char*, Phrase> kSamples[] = {
        {"swiss_helmert_9.dat", Phrase::kSwissSample},
        {"greek_order2_15.dat", Phrase::kGreekSample}};
    std::vector<fs::path> folders{PathOf(programFolder) / "../share/kv_tr/examples"};
    fs::path parent = PathOf(programFolder);
    for (int i = 0; i < kLevels; ++i, parent = parent.parent_path())
        folders.push_back(parent / "examples");
    std::error_code error;
    for (const fs::path& folder : folders) {
        if (!fs::exists(folder / kSamples[0].first, error)) continue;
        std::vector<Sample> samples;
        for (const auto& [name, title] : kSamples)
            samples.push_back({NameOfPath((folder / name).lexically_normal()), Said(title)});
        return samples;
    }
    return {};
}

}  // namespace kv_tr::workbench
