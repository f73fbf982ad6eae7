// Transforming a coordinate file, without the window.
#include "desktop/transform_form.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "common/excerpt.h"
#include "kv_tr/published/GCommonDialog.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/settings.h"
#include "kv_tr/text/file_names.h"
#include "kv_tr/text/line_reader.h"
#include "kv_tr/text/replacing_file.h"

namespace kv_tr::desktop {
namespace fs = std::filesystem;
namespace {

constexpr int kPreviewLines = 5;

constexpr Caption kCaptions[] = {
    {"Transform", Text::kTransformFile},      {"lblInput", Text::kCoordinateFileLabel},
    {"cmdBrowseInput", Text::kBrowse},        {"lblOutput", Text::kResultFileLabel},
    {"cmdBrowseOutput", Text::kBrowse},       {"lblDecimals", Text::kDecimalsLabel},
    {"chkNoId", Text::kNoIdOption},           {"chkDecimalComma", Text::kHasDecimalCommas},
    {"chkKeepGoing", Text::kKeepGoingOption}, {"frmPreview", Text::kPreviewFrame},
    {"cmdRun", Text::kTransformButton},       {"cmdNok", Text::kCancel},
};

FileDialogArguments Arguments(const std::string& fileName, Text title) {
    return {.Filename = fileName,
            .OverWritePrompt = false,  // Run asks
            .Filter = Translated(Text::kCoordinatesFilter) + Translated(Text::kAllFilesFilter),
            .InitDir = InitDir(),
            .DlgTitle = Translated(title)};
}

bool CanBeRead(const std::string& name) {
    std::error_code error;
    return !fs::is_directory(name, error) && std::ifstream(name).is_open();
}

}  // namespace

TransformForm::TransformForm(const TR_PRM& record) : Form(kCaptions), record_(record) {}

void TransformForm::Options(const app::CoordinateOptions& options) {
    options_ = options;
    Changed.Raise();
}

void TransformForm::Output(const std::string& fileName) {
    output_ = fileName;
    Changed.Raise();
}

void TransformForm::Input(const std::string& fileName) {
    input_ = fileName;
    const fs::path path(fileName);
    output_ = (path.parent_path() / path.stem()).string() + "_tr" + path.extension().string();
    Changed.Raise();
}

void TransformForm::BrowseInput() {
    FileDialogArguments arguments = Arguments(input_, Text::kTransformFile);
    if (!GCommonDialog().VBGetOpenFileName(arguments)) return;
    RememberFolderOf(arguments.Filename);
    Input(arguments.Filename);
}

void TransformForm::BrowseOutput() {
    FileDialogArguments arguments = Arguments(output_, Text::kTransformFile);
    if (GCommonDialog().VBGetSaveFileName(arguments)) Output(arguments.Filename);
}

std::vector<TransformForm::PreviewLine> TransformForm::Preview() const {
    std::vector<PreviewLine> lines;
    if (!CanBeRead(input_)) return lines;
    std::ifstream stream(input_, std::ios::binary);
    try {
        LineReader reader(*stream.rdbuf());
        reader.SkipUtf8Mark();
        while (std::ssize(lines) < kPreviewLines && !reader.AtEnd()) {
            const std::string line(reader.Next());
            const auto done = app::TransformLines(line, TransformationOf(record_), options_);
            const bool bad = done.stoppedAt || done.badLines > 0;
            lines.push_back({app::Excerpt(line), bad ? "" : app::Excerpt(done.text)});
        }
    } catch (const TextError&) {  // Run says what is wrong with the file
    }
    return lines;
}

bool TransformForm::MayWrite() const {
    std::error_code error;
    if (!fs::exists(output_, error)) return true;
    if (fs::equivalent(input_, output_, error)) {
        ShowMessage(Translated(Text::kTakesPlaceOfInput), Icon::kExclamation);
        return false;
    }
    return MayReplace(output_);
}

/// Nothing after a file that does not open has been shown. A result file that is not finished is
/// gone when the user is told so.
std::optional<app::CoordinateResult> TransformForm::Write(const Progress& progress) const {
    std::ifstream source(input_, std::ios::binary);
    ReplacingFile file(output_);
    if (!file.IsOpen()) {
        ReportOpenFailure(output_);
        return std::nullopt;
    }
    std::error_code error;
    const auto size =
        static_cast<double>(std::max<std::uintmax_t>(fs::file_size(input_, error), 1));
    const app::CoordinateOutput to{
        .write = [&file](std::string_view bytes) { file.Write(bytes); },
        .goOn =
            [&](std::uint64_t, std::uint64_t bytes) {
                return progress(std::min(static_cast<double>(bytes) / size, 1.0));
            }};
    const auto result =
        app::TransformText(*source.rdbuf(), to, TransformationOf(record_), options_);
    progress(1.0);
    if (result.Complete() && !file.Commit()) {
        throw WriteFailure(output_);
    }
    return result;
}

bool TransformForm::Run(const Progress& progress) const {
    if (!CanBeRead(input_)) {
        ReportOpenFailure(input_);
        return false;
    }
    if (!MayWrite()) return false;
    const auto result = Write(progress);
    if (!result) return false;
    const bool commas = result->mayHaveDecimalCommas;
    if (!commas || !result->endedBy) app::ReportBadLines(*result, input_);
    if (commas) {
        ShowMessage(Translated(Text::kCoordinatesHaveDecimalCommas,
                               {input_, Translated(Text::kHasDecimalCommas)}),
                    Icon::kExclamation);
    }
    if (result->cancelled) ShowMessage(Translated(Text::kCancelled));
    if (!result->Complete()) return false;
    ShowMessage(Translated(Text::kLinesTransformed, {std::to_string(result->lines), output_}),
                Icon::kInformation);
    return true;
}

}  // namespace kv_tr::desktop
