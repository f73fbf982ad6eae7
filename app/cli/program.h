// What all commands share: messages, notes, texts, and the table of commands.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "common/excerpt.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/platform.h"

namespace CLI {
class App;
class Validator;
}  // namespace CLI

namespace kv_tr::cli {

/// The program's exit codes.
inline constexpr int kDone = 0;
inline constexpr int kReported = 1;  // something was reported or failed
inline constexpr int kWrongUsage = 2;

/// Every message shown since the start; they also went to the standard error stream.
const std::vector<Message>& ReportedMessages();

/// Gives the component the command line's surroundings: messages are kept and printed, texts come
/// in this language, and numbers carry a point.
void InstallProgram(std::int32_t language);

/// Prints a remark, if it is not empty, to the standard error stream; unlike a message it does not
/// count as trouble.
void PrintNote(const std::string& text);

using app::Excerpt;

/// The language that the arguments or else the user's locale ask for, English failing both.
std::int32_t ChosenLanguage(const std::vector<std::string>& arguments);

/// A check for options that take a number; it yields the complaint, or nothing.
std::string CheckNumber(const std::string& text);

/// A check for options whose value is, or begins with, one of a few words, listed as "one, two".
/// The check bears them as its name, which completion offers.
CLI::Validator WithWords(const std::string& words,
                         const std::function<std::string(const std::string&)>& check);
/// The same where the value is one of the words.
CLI::Validator CheckWord(const std::string& words);

/// Adds the option --language with its check. It was obeyed before the options were built.
void AddLanguageOption(CLI::App& command);

/// Each adds its command to the program and yields what runs it and returns the exit code.
using Run = std::function<int()>;
Run AddAdjust(CLI::App& command);
Run AddPoints(CLI::App& command);
Run AddTransform(CLI::App& command);
Run AddTypes(CLI::App& command);
Run AddParams(CLI::App& command);
Run AddNational(CLI::App& command);
Run AddAngle(CLI::App& command);
Run AddDistortion(CLI::App& command);
Run AddWarp(CLI::App& command);  // where there is GDAL
Run AddHelp(CLI::App& command);  // after all others

}  // namespace kv_tr::cli
