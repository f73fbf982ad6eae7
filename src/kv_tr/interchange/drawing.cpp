// Drawings in DXF: their entities transformed, everything else byte for byte as it was.
#include "kv_tr/interchange/drawing.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <limits>
#include <set>

#include "kv_tr/interchange/dxf_rewriter.h"

namespace kv_tr {
namespace {

using namespace dxf;
using ProblemKind = DrawingProblem::Kind;

constexpr std::size_t kBlockOfOutput = 1 << 20;
constexpr double kUnset = 1e19;  // extents that nobody has computed are 1e20

std::string Capitals(std::string_view text) {
    std::string capitals(text);
    std::ranges::transform(capitals, capitals.begin(),
                           [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return capitals;
}

/// Reads a record after the other, which needs the first group of the next one.
class Records {
public:
    explicit Records(std::string_view bytes) : reader_(bytes) {}

    /// False at the end of the file. The first record is what comes before the first group 0.
    bool Next(Record& record) {
        record.tags.clear();
        if (ahead_) record.tags.push_back(next_);
        ahead_ = false;
        if (!record.tags.empty() && record.Type() == "EOF") return true;
        while (reader_.Next(next_)) {
            if (next_.code == 0) {
                ahead_ = true;
                break;
            }
            record.tags.push_back(next_);
        }
        record.FindScopes();
        return ahead_ || !record.tags.empty();
    }
    /// What comes after EOF; to be called when that is the record that is read.
    std::string_view Rest() const { return reader_.Rest(); }
    const Reader& Input() const { return reader_; }
    Reader& Input() { return reader_; }

private:
    Reader reader_;
    Tag next_;
    bool ahead_ = false;
};

class Drawing {
public:
    Drawing(std::string_view bytes, const PlaneMap& map, const DrawingOptions& options,
            const DrawingOutput& output)
        : bytes_(bytes), options_(options), output_(output), work_{map,
                                                                   map.FromBelow(),
                                                                   options.tolerance,
                                                                   {},
                                                                   1009,
                                                                   report_} {}

    DrawingReport Rewrite();

private:
    enum class Section { kNone, kOther, kHeader, kTables, kBlocks, kEntities, kObjects };

    void FindDimensionBlocks();
    void Go();
    void Handle(Record& record);
    void BeginSection(Record& record);
    void Header(Record& record);
    void MoveBox(Record& record, std::size_t least, std::size_t greatest);
    void InBlocks(Record& record);
    void Entity(Record& record);
    void EndOfGroup();
    template <class Rewriting>
    void Try(const Record& about, const Rewriting& rewrite, const std::function<void()>& restore);
    void Pass(const Record& record) { AppendRecord(out_, record, work_.form); }
    void Add(const Trouble& trouble, const Record* about);

    std::string_view bytes_;
    const DrawingOptions& options_;
    const DrawingOutput& output_;
    DrawingReport report_{};
    Work work_;
    std::string out_{};
    Section section_ = Section::kNone;
    std::set<std::string> dimensionBlocks_{};
    std::vector<Record> polyline_{};
    bool inMovedBlock_ = false;
    bool inPaper_ = false;
};

void Drawing::Add(const Trouble& trouble, const Record* about) {
    DrawingProblem problem = trouble.problem;
    if (about != nullptr) {
        problem.entity = about->Type();
        problem.handle = about->Handle();
        if (problem.line == 0) problem.line = about->Line();
    }
    if (report_.problems.size() < DrawingReport::kMostProblems) report_.problems.push_back(problem);
}

/// Dimensions carry a picture of themselves in a block, in the coordinates of the model.
void Drawing::FindDimensionBlocks() {
    Reader reader(bytes_);
    Tag tag;
    bool begins = false;
    bool inEntities = false;
    bool inDimension = false;
    bool inPaper = false;
    std::string block;
    while (reader.Next(tag)) {
        if (tag.code == 0) {
            if (inDimension && !inPaper && !block.empty()) dimensionBlocks_.insert(Capitals(block));
            const auto type = tag.Text();
            if (type == "EOF") return;
            if (type == "ENDSEC") inEntities = false;
            begins = type == "SECTION";
            inDimension = inEntities && type == "DIMENSION";
            inPaper = false;
            block.clear();
        } else if (tag.code == 2 && begins) {
            inEntities = tag.Text() == "ENTITIES";
        } else if (inDimension && tag.code == 2) {
            block = tag.Text();
        } else if (inDimension && tag.code == 67) {
            inPaper = tag.Integer() == 1;
        }
    }
}

DrawingReport Drawing::Rewrite() {
    try {
        Go();
        report_.complete =
            !report_.cancelled &&
            (options_.keepGoing || (report_.problems.empty() && report_.unknown.empty()));
    } catch (const Trouble& trouble) {  // of the file, not of an entity
        report_.problems.clear();
        Add(trouble, nullptr);
    }
    return report_;
}

void Drawing::Go() {
    Records records(bytes_);
    work_.form = records.Input().FormOfFile();
    out_ = records.Input().Mark();
    Record record;
    bool isFirst = true;
    while (records.Next(record)) {
        if (record.tags.empty()) continue;
        const bool isComment = record.tags.front().code != 0;
        if (isFirst && !isComment) {
            if (record.Type() != "SECTION") {
                throw Trouble{{.kind = ProblemKind::kNoDrawing, .line = record.Line()}};
            }
            isFirst = false;
            FindDimensionBlocks();
        }
        if (isComment) {
            if (record.tags.front().code != 999) {
                throw Trouble{{.kind = ProblemKind::kNoDrawing, .line = record.Line()}};
            }
            Pass(record);
            continue;
        }
        if (record.Type() == "EOF") {
            EndOfGroup();
            Pass(record);
            out_ += records.Rest();
            output_.write(out_);
            return;
        }
        Handle(record);
        if (out_.size() >= kBlockOfOutput) {
            output_.write(out_);
            out_.clear();
        }
        if (!output_.goOn(records.Input().Line(), records.Input().Position())) {
            report_.cancelled = true;
            return;
        }
    }
    throw Trouble{{.kind = isFirst ? ProblemKind::kNoDrawing : ProblemKind::kEndsEarly,
                   .line = records.Input().Line()}};
}

void Drawing::BeginSection(Record& record) {
    constexpr std::array<std::pair<std::string_view, Section>, 5> kSections{
        {{"HEADER", Section::kHeader},
         {"TABLES", Section::kTables},
         {"BLOCKS", Section::kBlocks},
         {"ENTITIES", Section::kEntities},
         {"OBJECTS", Section::kObjects}}};
    const auto name = record.Text(2);
    const auto* found =
        std::ranges::find(kSections, name, [](const auto& row) { return row.first; });
    section_ = found == kSections.end() ? Section::kOther : found->second;
    if (section_ == Section::kHeader) {
        Try(
            record, [&] { Header(record); }, [&] { record.Restore(); });
    }
    inMovedBlock_ = inPaper_ = false;
    Pass(record);
}

void Drawing::Handle(Record& record) {
    const auto type = record.Type();
    if (type != "VERTEX" && type != "SEQEND") EndOfGroup();
    if (type == "SECTION") return BeginSection(record);
    if (type == "ENDSEC") section_ = Section::kNone;
    switch (section_) {
        case Section::kTables:
            if (const auto* rule = ViewRuleOf(type); rule != nullptr && type != "VIEWPORT") {
                const bool ofPaper = type == "VIEW" && (record.Integer(70, 0) & 1) != 0;
                if (!ofPaper) RewriteView(record, *rule, work_);
            }
            return Pass(record);
        case Section::kBlocks: return InBlocks(record);
        case Section::kEntities: return Entity(record);
        case Section::kObjects:
            if (type == "GEODATA") {
                if (report_.unknown.empty()) report_.firstUnknownLine = record.Line();
                ++report_.unknown[std::string(type)];
            }
            return Pass(record);
        default: return Pass(record);
    }
}

void Drawing::InBlocks(Record& record) {
    if (record.Type() == "BLOCK") {
        const std::string name = Capitals(record.Text(2));
        inMovedBlock_ = dimensionBlocks_.contains(name) || name == "*MODEL_SPACE";
        inPaper_ = false;
        return Pass(record);
    }
    if (record.Type() == "ENDBLK") inMovedBlock_ = false;
    if (inMovedBlock_) return Entity(record);
    Pass(record);
}

/// The variables of the header: the box around the drawing, the limits and the base point.
void Drawing::Header(Record& record) {
    std::array<std::size_t, 5> found{};  // where the values of the variables begin
    constexpr std::array<std::string_view, 5> kNames{"$EXTMIN", "$EXTMAX", "$LIMMIN", "$LIMMAX",
                                                     "$INSBASE"};
    for (std::size_t i = 0; i + 1 < record.tags.size(); ++i) {
        if (record.tags[i].code != 9) continue;
        const auto name = record.tags[i].Text();
        if (name == "$ACADVER" && record.tags[i + 1].Text().starts_with("AC")) {
            Tag number = record.tags[i + 1];
            work_.version = std::atoi(std::string(number.Text().substr(2)).c_str());
        }
        const auto* row = std::ranges::find(kNames, name);
        if (row != kNames.end() && record.tags[i + 1].code == 10) {
            found.at(static_cast<std::size_t>(row - kNames.begin())) = i + 1;
        }
    }
    if (found[0] != 0 && found[1] != 0) MoveBox(record, found[0], found[1]);
    // Limits and base point may be anywhere, where only linear transformations make sense.
    if (!work_.map.IsLinear()) return;
    if (found[2] != 0 && found[3] != 0) MoveBox(record, found[2], found[3]);
    if (found[4] != 0) {
        const auto base = record.At(found[4]);
        if (base.Place() != Point{}) base.Put(work_.map.At(base.Place()));
    }
}

void Drawing::MoveBox(Record& record, std::size_t least, std::size_t greatest) {
    const auto low = record.At(least);
    const auto high = record.At(greatest);
    const Point a = low.Place();
    const Point b = high.Place();
    if (!(a.first <= b.first && a.second <= b.second) || std::abs(a.first) > kUnset) return;
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr int kParts = 16;
    Point from{kInfinity, kInfinity};
    Point to{-kInfinity, -kInfinity};
    try {
        for (int i = 0; i <= kParts; ++i) {
            const double t = static_cast<double>(i) / kParts;
            const Point at = a + Point{t * (b.first - a.first), t * (b.second - a.second)};
            for (const Point edge : {Point{at.first, a.second}, Point{at.first, b.second},
                                     Point{a.first, at.second}, Point{b.first, at.second}}) {
                const Point image = work_.map.At(edge);
                from = {std::min(from.first, image.first), std::min(from.second, image.second)};
                to = {std::max(to.first, image.first), std::max(to.second, image.second)};
            }
        }
    } catch (const Trouble&) {
        return;  // the box is only a hint for programs, which compute it again
    }
    low.Put(from);
    high.Put(to);
}

template <class Rewriting>
void Drawing::Try(const Record& about, const Rewriting& rewrite,
                  const std::function<void()>& restore) {
    const std::size_t before = out_.size();
    try {
        rewrite();
    } catch (const Trouble& trouble) {
        if (trouble.problem.kind < ProblemKind::kMissingCoordinate) throw;
        out_.resize(before);
        restore();
        Add(trouble, &about);
        ++report_.unmoved;
    }
}

void Drawing::Entity(Record& record) {
    const auto type = record.Type();
    if (type == "VERTEX" || (type == "SEQEND" && !polyline_.empty())) {
        if (polyline_.empty()) return Pass(record);
        polyline_.push_back(std::move(record));
        if (polyline_.back().Type() == "SEQEND") EndOfGroup();
        return;
    }
    if (type != "ATTRIB" && type != "SEQEND") inPaper_ = record.IsInPaper();
    if (type == "VIEWPORT") {
        // The first one of a layout shows the paper itself.
        if (record.Integer(69, 0) != 1) RewriteView(record, *ViewRuleOf(type), work_);
        return Pass(record);
    }
    if (inPaper_ || type == "SEQEND" || type == "ENDSEC" || type == "ENDBLK") return Pass(record);
    if (!IsKnown(type)) {
        if (report_.unknown.empty()) report_.firstUnknownLine = record.Line();
        ++report_.unknown[std::string(type)];
        return Pass(record);
    }
    if (type == "POLYLINE") {
        polyline_.push_back(std::move(record));
        return;
    }
    Try(
        record, [&] { RewriteEntity(record, work_, out_); },
        [&] {
            record.Restore();
            Pass(record);
        });
}

void Drawing::EndOfGroup() {
    if (polyline_.empty()) return;
    Try(
        polyline_.front(), [&] { RewritePolyline(polyline_, work_, out_); },
        [&] {
            for (Record& record : polyline_) {
                record.Restore();
                Pass(record);
            }
        });
    polyline_.clear();
}

}  // namespace

DrawingReport TransformDrawing(std::string_view bytes, const PointMap& map,
                               const DrawingOptions& options, const DrawingOutput& output) {
    return Drawing(bytes, PlaneMap(map, options.from, options.to), options, output).Rewrite();
}

}  // namespace kv_tr
