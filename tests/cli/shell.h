// The program as a user runs it, from a shell.
#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#include "helpers/files.h"
#include "helpers/recording_platform.h"

namespace kv_tr::test {

struct Result {
    int code;
    std::string out, err;
};

/// Runs command lines in a folder that holds the examples and a few more point files.
class Shell {
public:
    Shell() {
        std::filesystem::create_directory_symlink(EXAMPLES, folder_.File("examples"));
        for (const auto& [name, text] :
             {std::pair{"shift", "A 0 0 100 200\nB 10 0 110 200\nC 0 10 100 210\n"},
              {"huge", "A 1e300 0 0 0\nB 0 1e300 0 5\nC 0 0 1e300 0\n"},
              {"empty", ""},
              {"binary", "\x7F\x45LF\1\2\xFF\n\xEF\xBB"},
              {"short", "A 0 0 1 1\n\nB 1 1 2\n"},
              {"bad", "A 1 2\nB x 2\nC 1e400 2\nD\nE 1 2\n"},
              {"old", "old"}})
            WriteFile(folder_.File(name), text);
    }

    Result Run(const std::string& line, const std::string& input = {}) const {
        const std::string home = streams_.File("");
        WriteFile(home + "in", input);
        const std::string script = "unset LANG LC_MESSAGES NO_COLOR; export LC_ALL=C HOME=" + home +
                                   " XDG_CONFIG_HOME=" + home + " PATH='" +
                                   std::filesystem::path(KV_TR_PROGRAM).parent_path().string() +
                                   "':\"$PATH\"; cd " + folder_.File("") + "; { " + line + "; } <" +
                                   home + "in >" + home + "out 2>" + home + "err";
        const int status = std::system(script.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(home + "out"),
                ReadFile(home + "err")};
    }

    std::map<std::string, std::string> Files() const {
        std::map<std::string, std::string> files;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.File("")))
            files[entry.path().filename().string()] = ReadFile(entry.path().string());
        return files;
    }

private:
    const TemporaryFolder folder_, streams_;
};

}  // namespace kv_tr::test
