// The command line: kv_tr, and with GDAL kv_tr_layers.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>

#include "cli/hand_over.h"
#include "cli/interruption.h"
#include "cli/program.h"
#include "cli/wording.h"
#include "common/standard_streams.h"
#include "kv_tr/published/errors.h"

namespace kv_tr::cli {
namespace {

struct Command {
    const char* name;
    Text description;
    Run (*add)(CLI::App&);
};

constexpr Command kCommands[] = {
    {"adjust", Text::kAdjustSummary, AddAdjust},
    {"points", Text::kPointsSummary, AddPoints},
    {"transform", Text::kTransformSummary, AddTransform},
    {"types", Text::kTypesSummary, AddTypes},
    {"params", Text::kParamsSummary, AddParams},
    {"national", Text::kNationalSummary, AddNational},
    {"angle", Text::kAngleSummary, AddAngle},
    {"distortion", Text::kDistortionSummary, AddDistortion},
#ifdef KV_TR_GDAL
    {"warp", Text::kWarpSummary, AddWarp},
#endif
};

/// The exit code of what has been done, if all that was printed has also been written.
int WhenWritten(int code) {
    if (std::cout.flush()) return code;
    throw RuntimeError(ErrorNumber::kWriteFailed, Translated(Text::kCannotWriteAll));
}

int RunCommandLine(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    InstallProgram(ChosenLanguage(arguments));
#ifndef KV_TR_GDAL
    const bool isAboutAll = arguments.empty() || arguments.front().starts_with('-');
    const bool isWarp = std::ranges::find(arguments, "warp") != arguments.end();
    if (isAboutAll || isWarp) HandOver();
    if (!isAboutAll && arguments.front() == "warp") {
        PrintNote(Translated(Text::kNeedsGdal, {"kv_tr warp"}));
        return kWrongUsage;
    }
#endif

    CLI::App program(Translated(Text::kProgramSummary), "kv_tr");
    TranslateHelp(program);
    program.require_subcommand(1);
    program.set_help_flag("-h,--help", Translated(Text::kHelpOption));
    program.set_version_flag("--version", "kv_tr " KV_TR_VERSION, Translated(Text::kVersionOption));
    AddLanguageOption(program);

    Run run;
    for (const Command& command : kCommands) {
        CLI::App& added = *program.add_subcommand(command.name, Translated(command.description));
        added.group(Translated(Text::kCommandsHeading));
        added.set_help_flag("-h,--help", Translated(Text::kHelpOption));
        added.parse_complete_callback([&run, runThis = command.add(added)] { run = runThis; });
    }
    try {
        program.parse(argc, argv);
    } catch (const CLI::Success& wish) {  // help or version
        return WhenWritten(program.exit(wish));
    } catch (const CLI::ParseError& error) {
        PrintNote(Complaint(program, error));
        PrintNote(Translated(Text::kSeeHelp));
        return kWrongUsage;
    }
    return WhenWritten(run());
}

}  // namespace
}  // namespace kv_tr::cli

int main(int argc, char** argv) {
    using namespace kv_tr::cli;
    if (!kv_tr::app::OpenMissingStandardStreams()) return kReported;
#ifndef KV_TR_GDAL
    RememberArguments(argv);
#endif
    ReportFilesTooLarge();
    try {
        return RunCommandLine(argc, argv);
    } catch (const std::exception& error) {
        PrintNote(Translated(kv_tr::Text::kError) + " " + error.what());
        return kReported;
    }
}
