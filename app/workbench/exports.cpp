// What a project gives to others: parameters in every format, points, residuals, log and report.
#include "workbench/exports.h"

#include <algorithm>
#include <utility>

#include "common/point_text.h"
#include "kv_tr/files/adjustment_report.h"
#include "kv_tr/files/report_file.h"
#include "kv_tr/files/transformation_log.h"
#include "kv_tr/interchange/transformation_export.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "workbench/open_preview.h"
#include "workbench/saving.h"
#include "workbench/texts/said.h"

namespace kv_tr::workbench {
namespace {

const char* EndingOf(TransformationFormat format) {
    using enum TransformationFormat;
    switch (format) {
        case kJson: return "json";
        case kWkt2: return "wkt";
        case kWorldFile: return "tfw";
        case kCadWorldFile: return "wld";
        case kC: return "c";
        case kPython: return "py";
        case kSql: return "sql";
        default: return "txt";
    }
}

const char* EndingOf(PointFormat format) {
    using enum PointFormat;
    switch (format) {
        case kListing: return "dat";
        case kCsv: return "csv";
        case kQgis: return "points";
        case kVrt: return "vrt";
        case kCadWorld: return "wld";
        case kGeoJson: return "geojson";
        default: return "txt";
    }
}

/// What is written of a document; the standard deviations are kept beside.
PointsToWrite ToWrite(Document& document, std::vector<Point>& sigmas) {
    for (std::size_t i = 0; i < document.Count(); ++i) sigmas.push_back(document.SigmaAt(i));
    if (std::ranges::find(sigmas, Point{}) != sigmas.end()) sigmas.clear();
    const Settings& settings = document.Current();
    PointsToWrite what{.points = document.Points(), .sigmas = sigmas};
    if (document.HasFit()) what.residuals = document.Adjusted().Residuals();
    what.crs = settings.destination.crs;
    what.sourceAxes = settings.source.axes;
    what.targetAxes = settings.destination.axes;
    return what;
}

Offered OfPoints(PointText written, std::string name, const char* ending) {
    Offered offered{.name = std::move(name), .ending = ending};
    offered.reason = app::RefusalOf(written, offered.name);
    if (!offered.IsAvailable()) return offered;
    offered.losses = app::LossesOf(written, offered.name);
    offered.text = std::move(written.text);
    return offered;
}

}  // namespace

TransformationRecord RecordOf(Document& document) {
    const Settings& settings = document.Current();
    TransformationRecord record = FittedRecord(document.Points(), document.Adjusted().Result());
    record.sourceAxes = settings.source.axes;
    record.targetAxes = settings.destination.axes;
    record.sourceCrs = settings.source.crs;
    record.targetCrs = settings.destination.crs;
    for (const Origin& origin : settings.origins)
        record.madeFrom += (record.madeFrom.empty() ? "" : ", ") + origin.file;
    return record;
}

Offered Exported(Document& document, TransformationFormat format) {
    Offered offered{.name = Translated(FormatName(format)), .ending = EndingOf(format)};
    if (!document.HasFit()) {
        offered.reason = Said(Phrase::kNoFit);
        return offered;
    }
    const TransformationRecord record = RecordOf(document);
    auto exported = ExportTransformation(record, format, ComponentNumberStyle());
    if (const auto* refusal = std::get_if<Refusal>(&exported)) {
        offered.reason = RefusalText(*refusal, record.transformation, format, ComponentTexts());
    } else {
        offered.text = std::get<std::string>(std::move(exported));
    }
    return offered;
}

std::vector<Offered> AllExported(Document& document) {
    std::vector<Offered> all;
    for (const TransformationFormat format : TransformationFormats())
        all.push_back(Exported(document, format));
    return all;
}

Offered PointsAs(Document& document, PointFormat format) {
    std::vector<Point> sigmas;
    Offered offered = OfPoints(WritePoints(ToWrite(document, sigmas), format), FormatTitle(format),
                               EndingOf(format));
    offered.isInCodePage = format == PointFormat::kListing;
    if (offered.IsAvailable() && document.UseOfSigmas() == Document::SigmaUse::kMissing)
        offered.losses.push_back(Translated(Text::kSigmasLeftOut, {offered.name}));
    return offered;
}

Offered ResidualVectors(Document& document) {
    constexpr const char* kEnding = "geojson";
    const std::string name = Said(Phrase::kVectors);
    std::vector<Point> sigmas;
    const PointsToWrite what = ToWrite(document, sigmas);
    if (what.residuals.empty())
        return {.name = name, .reason = Said(Phrase::kNoFit), .ending = kEnding};
    return OfPoints(WriteResidualVectors(what, app::VisibleScale(what)), name, kEnding);
}

Offered Log(Document& document) {
    Offered offered{.name = Translated(Text::kLogFilter), .ending = "txt", .isInCodePage = true};
    if (document.HasFit()) {
        offered.text = TextOf(LogOf(document.Adjusted(), ComponentTexts(), ComponentNumberStyle()));
    } else {
        offered.reason = Said(Phrase::kNoFit);
    }
    return offered;
}

Report ReportOn(Document& document, const std::string& day) {
    const Settings& settings = document.Current();
    std::vector<ReportFile> files;
    for (const Origin& origin : settings.origins)
        files.push_back({origin.file, origin.isEdited ? "" : origin.checksum});
    std::vector<std::string> notes;
    for (std::size_t i = 0; i < document.Count(); ++i) notes.push_back(document.NoteAt(i));
    const auto hasNote = [&](std::size_t i) {
        return !notes[i].empty() && !document.PointAt(i).used;
    };
    bool isNoted = false;
    for (std::size_t i = 0; i < notes.size() && !isNoted; ++i) isNoted = hasNote(i);
    if (!isNoted) notes.clear();
    FindingsCache& findings = document.Findings();
    return ReportOf({.adjustment = document.Adjusted(),
                     .assessment = findings.Assessed(),
                     .advice = findings.Advised(),
                     .options = findings.Options(),
                     .outcome = document.Adjusted().Outcome(),
                     .solution = settings.solution,
                     .limit = settings.limit,
                     .files = std::move(files),
                     .date = day,
                     .version = ReportingProgram(),
                     .notes = notes,
                     .noteHeading = Said(Phrase::kNoteColumn)},
                    ComponentTexts(), ComponentNumberStyle());
}

std::string Objection(Document& document) {
    for (const StripLine& line : document.Strip()) {
        if (line.look == StripLine::Look::kSevere) return line.text;
    }
    return {};
}

std::string Save(const Offered& offered, const std::string& fileName) {
    return offered.isInCodePage ? SaveInCodePage(offered.text, fileName)
                                : SaveText(offered.text, fileName);
}

}  // namespace kv_tr::workbench
