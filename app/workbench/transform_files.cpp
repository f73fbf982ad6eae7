// Which files are transformed, how they are read, and where the results go; without a toolkit.
#include "workbench/transform_files.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

#include "common/excerpt.h"
#include "kv_tr/model/hull.h"
#include "kv_tr/text/line_reader.h"
#include "kv_tr/text/number_text.h"
#include "kv_tr/text/paths.h"
#include "workbench/texts/said.h"

namespace kv_tr::workbench {
namespace fs = std::filesystem;
namespace {

constexpr std::size_t kLooked = 20;  // lines that tell how a file is read

std::optional<ExactInverse> InverseOf(const AppliedTransformation& applied) {
    if (applied.sources.empty()) return ExactInverse::Of(applied.transformation);
    return ExactInverse::Of(applied.transformation, DomainOf(applied.sources));
}

bool IsSameFile(const std::string& one, const std::string& other) {
    std::error_code error;
    const auto place = [&error](const std::string& name) {
        return fs::absolute(PathOf(name), error).lexically_normal();
    };
    return fs::equivalent(PathOf(one), PathOf(other), error) || place(one) == place(other);
}

}  // namespace

TransformFiles::TransformFiles(AppliedTransformation applied)
    : applied_(std::move(applied)), inverse_(InverseOf(applied_)) {}

void TransformFiles::Add(const std::vector<std::string>& fileNames) {
    for (const std::string& name : fileNames) {
        const bool isThere = std::ranges::any_of(inputs_, [&name](const Input& input) {
            return !input.text && IsSameFile(input.name, name);
        });
        if (name.empty() || isThere) continue;
        inputs_.push_back({.name = name});
        if (inputs_.size() == 1) GuessOptions(inputs_.front());
    }
}

void TransformFiles::AddText(std::string text) {
    std::erase_if(inputs_, [](const Input& input) { return input.text.has_value(); });
    inputs_.push_back({.name = Said(Phrase::kClipboard), .text = std::move(text)});
    if (inputs_.size() == 1) GuessOptions(inputs_.front());
}

void TransformFiles::Remove(std::size_t index) {
    inputs_.erase(inputs_.begin() + static_cast<std::ptrdiff_t>(index));
}

std::string TransformFiles::NameOf(std::size_t index) const {
    const Input& input = inputs_[index];
    return input.text ? input.name : NameOfPath(PathOf(input.name).filename());
}

std::string TransformFiles::ResultOf(std::size_t index) const {
    const Input& input = inputs_[index];
    if (input.text) return {};
    const fs::path path = PathOf(input.name);
    std::string name;
    for (const char c : pattern_) name += c == '*' ? NameOfPath(path.stem()) : std::string(1, c);
    const fs::path folder = folder_.empty() ? path.parent_path() : PathOf(folder_);
    return NameOfPath(folder / PathOf(name + NameOfPath(path.extension())));
}

std::vector<std::string> TransformFiles::Obstacles() const {
    std::vector<std::string> obstacles;
    if (inputs_.empty()) obstacles.push_back(Said(Phrase::kNothingToTransform));
    if (pattern_.empty() || pattern_.find_first_of("/\\") != std::string::npos) {
        obstacles.push_back(Said(Phrase::kPatternNeeded));
        return obstacles;
    }
    for (std::size_t i = 0; i < Count(); ++i) {
        const std::string result = ResultOf(i);
        if (result.empty()) continue;
        for (std::size_t j = 0; j < Count(); ++j) {
            if (!inputs_[j].text && IsSameFile(result, inputs_[j].name))
                obstacles.push_back(Said(Phrase::kResultIsInput, {result}));
            if (j < i && IsSameFile(result, ResultOf(j)))
                obstacles.push_back(Said(Phrase::kSameResult, {result}));
        }
    }
    return obstacles;
}

std::vector<std::string> TransformFiles::Existing() const {
    std::vector<std::string> existing;
    for (std::size_t i = 0; i < Count(); ++i) {
        std::error_code error;
        const std::string result = ResultOf(i);
        if (!result.empty() && fs::exists(PathOf(result), error)) existing.push_back(result);
    }
    return existing;
}

std::vector<std::string> TransformFiles::FirstLines(const Input& input, std::size_t most) const {
    std::vector<std::string> lines;
    std::error_code error;
    std::ifstream file;
    std::istringstream text(input.text.value_or(""));
    if (!input.text) {
        if (IsDrawing(input.name) || !fs::is_regular_file(PathOf(input.name), error)) return lines;
        file = OpenToRead(PathOf(input.name));
        if (!file.is_open()) return lines;
    }
    std::streambuf* const source = input.text ? text.std::ios::rdbuf() : file.std::ios::rdbuf();
    LineReader reader(*source);
    try {
        reader.SkipUtf8Mark();
        while (lines.size() < most && !reader.AtEnd()) lines.emplace_back(reader.Next());
    } catch (const TextError&) {  // the lines before it are shown, the work says what is wrong
    }
    return lines;
}

/// Lines that are bad before the first point are a header, of at most five lines.
void TransformFiles::GuessOptions(const Input& input) {
    const std::vector<std::string> lines = FirstLines(input, kLooked);
    options_.headerLines = 0;
    options_.decimalComma = std::ranges::any_of(lines, [this](const std::string& line) {
        app::CoordinateOptions plain = options_;
        plain.decimalComma = false;
        return app::SeemsToHaveDecimalCommas(line, plain);
    });
    constexpr std::size_t kMostHeaders = 5;
    for (std::size_t i = 0; i < std::min(lines.size(), kMostHeaders + 1); ++i) {
        app::CoordinateFields fields;
        if (app::ReadCoordinates(lines[i], options_, fields) != app::LineKind::kPoint) continue;
        options_.headerLines = i;
        return;
    }
}

PointMap TransformFiles::Map() const {
    if (isInverse_) return *inverse_;
    return applied_.transformation;
}

app::CoordinateOptions TransformFiles::OptionsWithHull() const {
    app::CoordinateOptions options = options_;
    const std::vector<Point>& points = isInverse_ ? applied_.destinations : applied_.sources;
    if (!points.empty())
        options.hull = std::make_shared<const std::vector<Point>>(ConvexHull(points));
    return options;
}

std::vector<TransformFiles::PreviewLine> TransformFiles::Preview(std::size_t index,
                                                                 std::size_t most) const {
    std::vector<PreviewLine> preview;
    const PointMap map = Map();
    for (const std::string& line : FirstLines(inputs_[index], most)) {
        const std::string before = app::Excerpt(line);
        if (preview.size() < options_.headerLines) {
            preview.push_back({.before = before, .after = before, .isHeader = true});
            continue;
        }
        const auto done = app::TransformLines(line, map, options_);
        const bool bad = done.stoppedAt || done.badLines > 0;
        preview.push_back({.before = before, .after = bad ? "" : app::Excerpt(done.text)});
    }
    return preview;
}

std::size_t TransformFiles::FieldCount(std::size_t index) const {
    std::size_t most = 0;
    for (const std::string& line : FirstLines(inputs_[index], kLooked)) {
        std::string_view rest = line;
        std::size_t count = 0;
        while (!NextField(rest, options_.decimalComma).empty()) ++count;
        most = std::max(most, count);
    }
    return most;
}

TransformPlan TransformFiles::Plan(bool mayReplace) const {
    TransformPlan plan{
        .map = Map(),
        .options = OptionsWithHull(),
        .from = isInverse_ ? applied_.destinationAxes : applied_.sourceAxes,
        .to = isInverse_ ? applied_.sourceAxes : applied_.destinationAxes,
        .mayReplace = mayReplace,
    };
    for (std::size_t i = 0; i < Count(); ++i)
        plan.tasks.push_back({inputs_[i].name, inputs_[i].text, ResultOf(i)});
    return plan;
}

}  // namespace kv_tr::workbench
