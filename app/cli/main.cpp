// The command line: kv_tr, and with GDAL kv_tr_layers.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>

#include "cli/completion.h"
#include "cli/console.h"
#include "cli/hand_over.h"
#include "cli/interruption.h"
#include "cli/manual.h"
#include "cli/manual_words.h"
#include "cli/program.h"
#include "cli/wording.h"
#include "common/standard_streams.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/text/version.h"

namespace kv_tr::cli {
namespace {

struct Command {
    const char* name;
    Text description;
    Run (*add)(CLI::App&);
};

#ifndef KV_TR_GDAL
/// Whether the arguments are about all commands rather than one, or complete the name of one.
bool IsAboutAll(const std::vector<std::string>& arguments) {
    if (arguments.empty() || arguments.front().starts_with('-')) return true;
    const std::string& first = arguments.front();
    if (first == kCandidatesCommand) return arguments.size() <= 2;
    return first == kManualCommand || (first == "help" && arguments.size() == 1);
}
#endif

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

int RunCommandLine(const std::vector<std::string>& arguments) {
    InstallProgram(ChosenLanguage(arguments));
#ifndef KV_TR_GDAL
    const bool isAboutAll = IsAboutAll(arguments);
    const bool isWarp = std::ranges::find(arguments, "warp") != arguments.end();
    if (isAboutAll || isWarp) HandOver();
    if (isWarp && !isAboutAll && (arguments.front() == "warp" || arguments.front() == "help")) {
        PrintNote(Translated(Text::kNeedsGdal, {"kv_tr warp"}));
        return kWrongUsage;
    }
#endif

    CLI::App program(Translated(Text::kProgramSummary), "kv_tr");
    TranslateHelp(program);
    program.require_subcommand(1);
    program.allow_windows_style_options(false);  // a name may begin with "/" there, too
    program.set_help_flag("-h,--help", Translated(Text::kHelpOption));
    program.set_version_flag("--version", std::string("kv_tr ") + Version(),
                             Translated(Text::kVersionOption));
    AddLanguageOption(program);

    Run run;
    const auto add = [&](const char* name, const std::string& description,
                         Run (*adder)(CLI::App&)) {
        CLI::App& added = *program.add_subcommand(name, description);
        added.group(Translated(Text::kCommandsHeading));
        added.set_help_flag("-h,--help", Translated(Text::kHelpOption));
        added.footer(ExamplesHelp(name));
        added.parse_complete_callback([&run, runThis = adder(added)] { run = runThis; });
    };
    for (const Command& command : kCommands)
        add(command.name, Translated(command.description), command.add);
    add("help", Said(kHelpSummary), AddHelp);
    if (arguments.size() > 1 && arguments.front() == kCandidatesCommand) {
        for (const std::string& line :
             Candidates(program, {arguments.begin() + 1, arguments.end()}))
            std::cout << line << '\n';
        return WhenWritten(kDone);
    }
    if (arguments.size() > 1 && arguments.front() == kManualCommand)
        return WriteManual(program, arguments[1]);
    try {
        program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
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
    PrepareConsole();
    try {
        return RunCommandLine(Arguments(argc, argv));
    } catch (const std::exception& error) {
        PrintNote(Translated(kv_tr::Text::kError) + " " + error.what());
        return kReported;
    }
}
