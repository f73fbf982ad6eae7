// The manual pages, the help and the completion of the program, as a shell gets them.
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <sstream>

#include "cli/command_line.h"

namespace kv_tr::test {
namespace {

using Lines = std::vector<std::string>;

Lines LinesOf(const std::string& text) {
    std::istringstream stream(text);
    Lines lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line.substr(0, line.find('\t')));
    return lines;
}

TEST_F(CommandLine, CompletesWhatMayFollow) {
    WriteFile(work + "blanks.csv", "id,y1,x1,y2,x2\nold mill,0,0,1,1\nA,1,0,2,1\nB,0,1,1,2\n");
    const std::pair<std::string, Lines> cases[] = {
        {"di", {"distortion"}},
        {"help nat", {"national"}},
        {"adjust --ex", {"--exclude", "--export"}},
        {"adjust --type pol", {"poly1", "poly2", "poly3", "poly4", "poly5"}},
        {"adjust --type = hel", {"helmert", "helmert3"}},  // as bash cuts the line
        {"adjust --type=helmert3", {"--type=helmert3"}},
        {"transform x --national EOV_STG_1", {"EOV_STG_10e"}},
        {"points --format = ''",
         {"listing", "csv", "qgis", "gcp", "vrt", "link", "cad", "grass", "geojson"}},
        {"params x --axes n", {"ne", "nw"}},
        {"types --language v", {"vi"}},
        {"adjust shift --exclude ''", {"A", "B", "C"}},
        {"adjust --limit 1 --type affine shift --json --exclude B --exclude B", {"B"}},
        {"adjust '\"blanks.csv\"' --exclude o", {"old mill"}},
        {"adjust examples/two_lists/old_survey.txt --target examples/two_lists/new_survey.txt "
         "--exclude 86.3",
         {"86.323"}},
        {"adjust gone --exclude ''", {}},
        {"adjust ''", {}},  // a file
        {"adjust shift --log ''", {}},
        {"nonsense --type ''", {}},
    };
    for (const auto& [words, candidates] : cases) {
        SCOPED_TRACE(words);
        EXPECT_EQ(Run("kv_tr __complete " + words), 0);
        EXPECT_EQ(LinesOf(out), candidates);
        EXPECT_EQ(err, "");
    }

    const std::string script =
        "bash -c 'source " SOURCES
        "/app/cli/completion/kv_tr.bash; COMP_WORDS=(kv_tr adjust blanks.csv --exclude \"\"); "
        "COMP_CWORD=4; _kv_tr kv_tr; printf \"%s\\n\" \"${COMPREPLY[@]}\"'";
    EXPECT_EQ(Run(script), 0);
    EXPECT_EQ(LinesOf(out), (Lines{"old\\ mill", "A", "B"}));
}

TEST_F(CommandLine, HelpsWithACommandAsItsOptionDoes) {
    EXPECT_EQ(Run("kv_tr --help >1; kv_tr help >2; kv_tr adjust --help --language hu >3; "
                  "kv_tr help adjust --language hu >4; cmp 1 2 && cmp 3 4"),
              0);
    EXPECT_EQ(Run("cat 4"), 0);
    EXPECT_NE(out.find("\nPéldák:\n"), out.npos) << out;
    EXPECT_EQ(Run("kv_tr help nonsense"), 2);
    EXPECT_NE(err.find("adjust, points, "), err.npos) << err;
}

TEST_F(CommandLine, HasAManualPageForEachCommandWithAllItsOptionsInEachLanguage) {
    ASSERT_EQ(Run("kv_tr __complete ''"), 0);
    const Lines commands = LinesOf(out);
    EXPECT_GE(commands.size(), 9u);
    for (const std::string language : {"hu", "ro", "vi", "en", "sr"}) {
        const std::string pages = "manual/" + language;
        ASSERT_EQ(
            Run("SOURCE_DATE_EPOCH=86400 kv_tr __manual " + pages + " --language=" + language), 0)
            << err;
        for (const std::string& command : commands) {
            SCOPED_TRACE(language + " " + command);
            ASSERT_EQ(Run("kv_tr __complete " + command + " --"), 0);
            const std::string page = std::regex_replace(
                ReadFile(work + pages + "/kv_tr-" + command + ".1"), std::regex(R"(\\-)"), "-");
            EXPECT_NE(page.find("\"1970-01-02\""), page.npos);
            for (const std::string& option : LinesOf(out))
                EXPECT_NE(page.find("\\fB" + option + "\\fR"), page.npos) << option;
        }
        // Whoever renders the pages has nothing to complain of.
        EXPECT_EQ(Run("! command -v man >/dev/null || for page in " + pages +
                      "/*; do LC_ALL=C.UTF-8 man --warnings=w -l $page >/dev/null || exit 1; done"),
                  0);
        EXPECT_EQ(err, "");
        EXPECT_EQ(
            Run("! command -v mandoc >/dev/null || mandoc -T lint -W warning " + pages + "/*"), 0)
            << out << err;
    }
}

}  // namespace
}  // namespace kv_tr::test
