// The program run as a user runs it, in a folder of its own.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#include "helpers/files.h"
#include "helpers/recording_platform.h"

namespace kv_tr::test {

/// Whether the program is that of Windows, which Wine runs: KV_TR_PROGRAMS is the folder with a
/// `kv_tr` that starts it.
inline bool IsThroughWine() { return std::getenv("KV_TR_PROGRAMS") != nullptr; }

/// Why a command line cannot be tried on Windows, or empty.
inline std::string WhyNotThroughWine(const std::string& line) {
    if (!IsThroughWine()) return {};
    for (const auto& [part, reason] : {
             std::pair{"\\377", "names are UTF-8"},
             {"command -v", "the program is a script that starts Wine"},
             {"KV_Tr.res", "the program is a script that starts Wine"},
             {"script -", "a terminal of POSIX is no console"},
             {"transform bad\"", "no name of a file has control characters there"},
             {"/dev/stdin", "there is no such file"},
             {"/dev/null --save", "there is no such file"},
             {"dangling", "links are followed by Wine, but not seen through it"},
             {"ulimit -f", "the limit ends Wine"},
         }) {
        if (line.find(part) != line.npos) return reason;
    }
    return {};
}

inline constexpr char kSurroundings[] =
    "; unset LANG LC_MESSAGES NO_COLOR; export LC_ALL=C.UTF-8 HOME=$PWD/.. "
    "XDG_CONFIG_HOME=$PWD/..; "
    "PATH=${KV_TR_PROGRAMS:-$(dirname '" KV_TR_PROGRAM "')}:$PATH; { ";

/// Runs command lines in a folder that holds the examples and a few more point files.
class CommandLine : public testing::Test {
protected:
    const TemporaryFolder folder;
    const std::string work = folder.File("work/");
    std::string out, err;

    CommandLine() {
        std::filesystem::create_directory(work);
        std::filesystem::create_directory_symlink(EXAMPLES, work + "examples");
        for (const std::string name : {"national", "adjustment", "interchange"}) {
            std::filesystem::create_directory_symlink(TEST_DATA "/" + name, work + name);
        }
        for (const auto& [name, text] :
             {std::pair{"shift", "A 0 0 100 200\nB 10 0 110 200\nC 0 10 100 210\n"},
              {"huge", "A 1e300 0 0 0\nB 0 1e300 0 5\nC 0 0 1e300 0\n"},
              {"binary.trp", "\x7F\x45LF\1\2\xFF\n\xEF\xBB"},
              {"short", "A 0 0 1 1\n\nB 1 1 2\n"},
              {"bad", "A 1 2\nB x 2\nC 1e400 2\nD\nE 1 2\n"},
              {"flat.trp", "0 1 2 0 2 4"},
              {"old", "old"}})
            WriteFile(work + name, text);
    }

    /// The exit code.
    int Run(const std::string& line, const std::string& input = {}) {
        WriteFile(folder.File("in"), input);
        const std::string script =
            "cd " + work + kSurroundings + line + "; } <../in >../out 2>../err";
        const int status = std::system(script.c_str());
        out = ReadFile(folder.File("out"));
        err = ReadFile(folder.File("err"));
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::map<std::string, std::string> Files() const {
        std::map<std::string, std::string> files;
        for (const auto& entry : std::filesystem::directory_iterator(work))
            files[entry.path().filename().string()] = ReadFile(entry.path().string());
        return files;
    }
};

}  // namespace kv_tr::test
