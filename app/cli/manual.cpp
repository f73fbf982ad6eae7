// The manual pages of the program and its commands, written from what --help says.
#include "cli/manual.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>

#include "cli/manual_words.h"
#include "cli/parameters.h"
#include "cli/program.h"
#include "kv_tr/forms/save_report.h"
#include "kv_tr/text/paths.h"
#include "kv_tr/text/version.h"

namespace kv_tr::cli {
namespace {

struct Example {
    std::string_view command;
    Words caption;
    const char* line;
};

constexpr Example kExamples[] = {
    {"adjust", kFitExample,
     "kv_tr adjust points.dat --type helmert --exclude 66.301 --log log.txt"},
    {"adjust", kReportExample,
     "kv_tr adjust points.dat --type poly2 --report report.html --save-params town.all"},
    {"adjust", kAdviseExample, "kv_tr adjust points.dat --type poly2 --statistics --advise"},
    {"points", kConvertExample, "kv_tr points points.dat --output points.csv"},
    {"transform", kTransformExample,
     "kv_tr transform old.txt --points points.dat --type helmert --output new.txt"},
    {"transform", kBuiltInExample, "kv_tr transform stg.txt --national STG_EOV_10e"},
    {"transform", kLayersExample, "kv_tr transform old.gpkg --params town.all --output new.gpkg"},
    {"params", kParametersExample, "kv_tr params town.all --export json"},
    {"angle", kAngleExample, "kv_tr angle 50 650000 250000 --national EOV_STG_10e --unit gon"},
    {"distortion", kDistortionExample, "kv_tr distortion old.txt --points points.dat --type poly2"},
    {"warp", kWarpExample,
     "kv_tr warp scan.tif --points scan.points --type helmert --pixels up --output map.tif"},
};

constexpr std::pair<int, Words> kExitCodes[] = {
    {kDone, kExitDone}, {kReported, kExitReported}, {kWrongUsage, kExitWrongUsage}};
constexpr std::pair<const char*, Words> kVariables[] = {
    {"LC_ALL, LC_MESSAGES, LANG", kLocaleVariables},
    {"NO_COLOR", kNoColorVariable},
    {"SOURCE_DATE_EPOCH", kEpochVariable}};
constexpr std::pair<const char*, Words> kFiles[] = {
    {".dat", kPointFiles}, {".trp, .prm", kLinearFiles}, {".all", kPolynomialFiles}};

/// A text as roff takes it, with hyphens that can be searched for and copied.
std::string Roff(const std::string& text) {
    std::string escaped;
    for (const char letter : text) {
        if (letter == '\\') {
            escaped += "\\e";
        } else if (letter == '-') {
            escaped += "\\-";
        } else {
            escaped += letter;
        }
    }
    return escaped;
}

std::string Bold(const std::string& text) { return "\\fB" + Roff(text) + "\\fR"; }
std::string Italic(const std::string& text) { return "\\fI" + Roff(text) + "\\fR"; }

/// A paragraph in lines of roff, none of which begins like a request.
std::string Filled(const std::string& text) {
    constexpr std::size_t kWidth = 78;
    std::string filled;
    std::size_t length = 0;
    for (std::string word : CLI::detail::split(text, ' ')) {
        word = Roff(word);
        if (length > 0 && length + 1 + word.size() <= kWidth) {
            filled += ' ' + word;
            length += 1 + word.size();
            continue;
        }
        if (length > 0) filled += '\n';
        if (word.starts_with('.') || word.starts_with('\'')) filled += "\\&";
        filled += word;
        length = word.size();
    }
    return filled + '\n';
}

std::string Section(const std::string& heading) { return ".SH " + heading + '\n'; }
std::string Entry(const std::string& head, const std::string& text) {
    return ".TP\n" + head + '\n' + Filled(text);
}

/// The name of the page of the program or of a command.
std::string PageOf(const CLI::App& program, const CLI::App& command) {
    const bool isProgram = &command == &program;
    return program.get_name() + (isProgram ? "" : "-" + command.get_name());
}

std::string Synopsis(const CLI::App& program, const CLI::App& command) {
    if (&command == &program) {
        return Bold(program.get_name()) + " [" + Italic(Translated(Text::kOptionsPlace)) + "] " +
               Italic(Translated(Text::kCommandPlace)) + '\n';
    }
    std::string line = Bold(program.get_name() + " " + command.get_name()) + " [" +
                       Italic(Translated(Text::kOptionsPlace)) + "]";
    for (const CLI::Option* option : command.get_options()) {
        if (!option->get_positional()) continue;
        const std::string name =
            Italic(option->get_name(true)) + (option->get_items_expected_max() > 1 ? " ..." : "");
        line += option->get_required() ? " " + name : " [" + name + "]";
    }
    return line + '\n';
}

/// The names of an option, its value and the value that it has otherwise.
std::string HeadOf(const CLI::Option& option) {
    if (option.get_positional()) return Italic(option.get_name(true));
    std::string head;
    for (const std::string& name : option.get_snames()) head += Bold("-" + name) + ", ";
    for (const std::string& name : option.get_lnames()) head += Bold("--" + name) + ", ";
    head.resize(head.size() - 2);
    if (option.get_items_expected_max() == 0) return head;
    head += " " + Italic(option.get_type_name());
    const std::string otherwise = option.get_default_str();
    return otherwise.empty() ? head : head + " (" + Roff(otherwise) + ")";
}

std::string Options(const CLI::App& command, bool positional) {
    std::string text;
    for (const CLI::Option* option : command.get_options()) {
        if (option->get_positional() == positional)
            text += Entry(HeadOf(*option), option->get_description());
    }
    const std::string heading =
        positional ? Said(kArgumentsTitle) : Translated(Text::kOptionsPlace);
    return text.empty() ? text : Section(heading) + text;
}

std::string Commands(const CLI::App& program) {
    std::string text;
    for (const CLI::App* command : program.get_subcommands({}))
        text += Entry(Bold(command->get_name()), command->get_description());
    return text.empty() ? text : Section(Said(kCommandsTitle)) + text;
}

std::string Examples(const std::string& command) {
    std::string text;
    for (const Example& example : kExamples) {
        if (!command.empty() && example.command != command) continue;
        text += (text.empty() ? "" : ".PP\n") + Filled(Said(example.caption) + ":") +
                ".PP\n.RS 4\n.nf\n" + Roff(example.line) + "\n.fi\n.RE\n";
    }
    return text.empty() ? text : Section(Said(kExamplesTitle)) + text;
}

std::string SeeAlso(const CLI::App& program, const CLI::App& command) {
    std::string pages;
    const auto add = [&](const CLI::App& other) {
        if (&other == &command) return;
        pages += (pages.empty() ? "" : ",\n") + std::string(".BR ") + Roff(PageOf(program, other)) +
                 " (1)";
    };
    add(program);
    for (const CLI::App* other : program.get_subcommands({})) add(*other);
    return Section(Said(kSeeAlsoTitle)) + pages + '\n';
}

std::string Page(const CLI::App& program, const CLI::App& command, const std::string& day) {
    const bool isProgram = &command == &program;
    const std::string name = PageOf(program, command);
    std::string title = name;
    std::ranges::transform(title, title.begin(), [](unsigned char letter) {
        return static_cast<char>(std::toupper(letter));
    });
    std::string page = ".TH " + Roff(title) + " 1 \"" + day + "\" \"kv_tr " + Version() + "\"\n";
    page += Section(Said(kNameTitle)) + Roff(name) + " \\- " + Roff(command.get_description()) +
            '\n' + Section(Said(kSynopsisTitle)) + Synopsis(program, command) +
            Section(Said(kDescriptionTitle)) +
            Filled(isProgram ? Said(kProgramDetails) : command.get_description() + ".");
    page += Commands(command) + Options(command, true) + Options(command, false);
    page += Section(Said(kExitStatusTitle));
    for (const auto& [code, words] : kExitCodes)
        page += Entry(Bold(std::to_string(code)), Said(words));
    if (isProgram) {
        page += Section(Said(kEnvironmentTitle));
        for (const auto& [variable, words] : kVariables) page += Entry(Bold(variable), Said(words));
        page += Section(Said(kFilesTitle));
        for (const auto& [extension, words] : kFiles) page += Entry(Italic(extension), Said(words));
    }
    return page + Examples(isProgram ? "" : command.get_name()) + SeeAlso(program, command);
}

}  // namespace

std::string ExamplesHelp(const std::string& command) {
    std::string text;
    for (const Example& example : kExamples) {
        if (example.command == command)
            text += "  " + Said(example.caption) + ":\n    " + example.line + '\n';
    }
    return text.empty() ? text : Said(kExamplesHeading) + ":\n" + text;
}

int WriteManual(const CLI::App& program, const std::string& folder) {
    const std::string day = DayOfReportOrMessage();
    if (day.empty()) return kReported;
    std::filesystem::create_directories(PathOf(folder));
    std::vector<const CLI::App*> all = program.get_subcommands({});
    all.push_back(&program);
    const bool saved = std::ranges::all_of(all, [&](const CLI::App* command) {
        const std::string file = folder + "/" + PageOf(program, *command) + ".1";
        return SaveBytes(file, Page(program, *command, day));
    });
    return saved ? kDone : kReported;
}

}  // namespace kv_tr::cli
