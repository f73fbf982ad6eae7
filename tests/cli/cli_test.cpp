// The program as a user runs it: command lines and files in, exit code, texts and files out.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <charconv>
#include <nlohmann/json.hpp>
#include <regex>

#include "cli/shell.h"
#include "support/code_page.h"

namespace kv_tr::test {
namespace {

using nlohmann::json;

TEST(CommandLine, ReportsAndExitsAsPromised) {
    const struct {
        std::string line;
        int code;
        std::string out, err;  // regular expressions for parts
    } cases[] = {
        {"kv_tr --version", 0, "^kv_tr [0-9.]+\n$", "^$"},
        {"kv_tr", 2, "^$", "."},
        {"kv_tr types", 0, "^type .*(\n.*)*\nbilinear +6 +4  Bilinear \\(trapezoid\\) tr", "^$"},
        {"kv_tr --language=hu types", 0, "^típus", "^$"},
        {"env LANG=hu_HU kv_tr types", 0, "^type", "^$"},  // LC_ALL comes first
        {"env LC_ALL= LANG=hu_HU.UTF-8 kv_tr types", 0, "^típus", "^$"},
        {"env LC_ALL= LC_MESSAGES=en_GB LANG=hu kv_tr types", 0, "^type", "^$"},
        {"env LC_ALL=hu_HU kv_tr types --language en", 0, "^type", "^$"},
        {"env LC_ALL=xx_YY kv_tr types", 0, "^type", "^$"},
        {"kv_tr adjust", 2, "^$", "POINTS"},
        {"kv_tr adjust shift --type poly6", 2, "^$", "poly6; .* helmert3, .* poly5"},
        {"kv_tr adjust shift --language de", 2, "^$", "de; .*hu, ro, vi, en, sr"},
        {"kv_tr adjust shift --limit -1", 2, "^$", "--limit: .*-1"},
        {"kv_tr adjust shift", 0, "\tAFFINE .*\n\ta0 = 100\\.000\n(.*\n)*\t.*Y =0\\.000 m", "^$"},
        {"kv_tr adjust shift --inverse --decimal-comma", 0, "\ta0 = -100,000\n", "^$"},
        {"kv_tr adjust examples/greek_order2_15.dat --type poly4 --exclude 3", 0,
         "\t3\\. order(.*\n)*\tExcluded points:\n.*\n +3 ", "now: 3\\. order"},
        {"kv_tr adjust shift --exclude A --exclude X", 1, "^$", "identifier X\n$"},
        {"kv_tr adjust shift --exclude A --exclude B", 1, "HELMERT", "at least 2 points!\n"},
        {"kv_tr adjust shift --type poly2", 1, "^$", "^To few GCPs .*!\nshift: .* 6 .* 3"},
        {"kv_tr adjust huge", 1, "a0 = nan", "DET=0"},
        {"kv_tr adjust empty", 1, "^$", "^To few GCPs"},
        {"kv_tr adjust gone", 1, "^$", "^File open error:gone\nInvalid file format!\n1\\.line\n$"},
        {"kv_tr adjust .", 1, "^$", "^File open error:\\.\n"},
        {"kv_tr adjust binary", 1, "^$", "^Invalid .*\n1\\.line\n.*line 1:[^\x01-\x1F\x7F]*\n$"},
        {"kv_tr adjust short", 1, "^$", "^Invalid .*\n1\\.line\nshort, line 3: .*: B 1 1 2\n$"},
        {"kv_tr adjust shift --log no/log --save-points old/x", 1, "a0 = 100",
         "^File open error:no/log\nFile open error:old/x\n$"},
        {"kv_tr adjust shift --log /dev/full", 1, "a0 = 100", "could be written: /dev/full\n$"},
        {"kv_tr adjust examples/qgis_order1_4.dat --type bilinear --exclude 1 --exclude 2 --json",
         0, "\"type\": 0,(.*\n)*.*\"bNotUsed\": true(.*\n)*  \"events\": \\[\n    1,\n    0\n",
         "HELMERT"},
        {"kv_tr adjust shift --type poly5 --json", 1,
         "\"parameters\": null,\n  \"statistics\": null,(.*\n)*.*\"bNotUsed\": false", "^To few"},
        {"kv_tr adjust short --json", 1, "\"text\": \"Invalid file format!\\\\r\\\\n1.line\",",
         "."},
        {"kv_tr adjust huge --json", 1, "\"dA0\": null,(.*\n)*.*\"dRmsErr\": null", "DET=0"},
        {"kv_tr adjust $(printf '\\377') --json", 1, "error:\uFFFD\",\n", "."},
        {"kv_tr transform bad --points shift --type affine", 1, "^A 101.000 202.000\n$",
         "^bad, line 2: .*: B x 2\n$"},
        {"kv_tr transform bad --points shift --type affine --keep-going", 1,
         "^A 101.000 202.000\nB x 2\nC 1e400 2\nD\nE 101.000 202.000\n$", "^3 .* 5 .*\n$"},
        {"kv_tr transform gone --points shift --type affine", 1, "^$", "error:gone\n$"},
        {"kv_tr transform bad --points shift --type affine --output old", 1, "^$", "line 2"},
        {"kv_tr transform bad --points shift --type affine --output new", 1, "^$", "line 2"},
        {"kv_tr transform bad --points shift --type affine --output .", 1, "^$", "error:\\.\n$"},
        {"kv_tr transform bad --points huge --type affine", 1, "^$",
         "DET=0 !\n.*othing was transformed"},
        {"kv_tr transform bad --points shift --type poly5", 1, "^$", "^To few GCPs"},
        {"kv_tr transform bad --points shift", 2, "^$", "--type"},
        {"kv_tr transform bad --points shift --type affine --decimals 16", 2, "^$", "16"},
    };
    const Shell shell;
    const auto files = shell.Files();
    for (const auto& [line, code, out, err] : cases) {
        SCOPED_TRACE(line);
        const Result result = shell.Run(line);
        EXPECT_EQ(result.code, code);
        EXPECT_TRUE(std::regex_search(result.out, std::regex(out))) << result.out;
        EXPECT_TRUE(std::regex_search(result.err, std::regex(err))) << result.err;
        EXPECT_EQ(shell.Files(), files);
        EXPECT_TRUE(line.find("--json") == line.npos || json::accept(result.out));
    }
}

TEST(CommandLine, TransformsTheCoordinatesAndKeepsEveryOtherByte) {
    const std::string nul("\0", 1);
    const struct {
        std::string options, input, output;
    } cases[] = {
        {"-", "A 1 2\r\n\"B\";3,4; rest\t5 \n\n \t;\nC\t5'6\r7 8",
         "A 101.000 202.000\r\n\"B\";103.000,204.000; rest\t5 \n\n \t;\nC\t105.000'206.000\r"
         "107.000 208.000"},
        {"", "\xEF\xBB\xBF\x31 2 3\n", "\xEF\xBB\xBF\x31 102.000 203.000\n"},
        {"", "\xEFz 1 2\n", "\xEFz 101.000 202.000\n"},  // begins like a UTF-8 mark
        {"", "\xFBr" + nul + " 1 2 \xFF", "\xFBr" + nul + " 101.000 202.000 \xFF"},
        {"--decimals 2", "A -100.0001 +.5e1\n", "A 0.00 205.00\n"},
        {"--decimals 010", "A 0.5 0\n", "A 100.5000000000 200.0000000000\n"},
        {"--no-id", "1;2;3\n", "101.000;202.000;3\n"},
    };
    const Shell shell;
    for (const auto& [options, input, output] : cases) {
        const std::string line = "kv_tr transform --points shift --type poly1 " + options;
        const Result result = shell.Run(line, input);
        EXPECT_EQ(result.code, 0) << result.err;
        EXPECT_EQ(result.out, output);
        EXPECT_EQ(shell.Run(line + " --output new", input).out, "");
        EXPECT_EQ(shell.Files()["new"], output);
    }
    shell.Run("kv_tr transform new --points shift --type affine --output new");
    EXPECT_EQ(shell.Files()["new"], "101.000;302.000;203.000\n");
}

TEST(CommandLine, SavesTheLogAndThePointsInTheCodePageWithCrLf) {
    const Shell shell;
    const std::string out =
        shell
            .Run(
                "kv_tr adjust examples/textbook_conformal_3.dat --exclude C --language hu "
                "--decimal-comma --log log --save-points points")
            .out;
    EXPECT_TRUE(out.starts_with("\tTranszformációs jegyzőkönyv\n\n\tHELMERT"));
    EXPECT_EQ(shell.Files()["log"], std::regex_replace(ToCodePage(out, CodePage::kWindows1250),
                                                       std::regex("\n"), "\r\n"));
    EXPECT_EQ(
        shell.Files()["points"].substr(0, 82),
        "                   A        121,622       -128,066    1049422,400      51089,200\r\n");
}

TEST(CommandLine, PrintsEveryNumberInItsShortestForm) {
    const std::string out =
        Shell().Run("kv_tr adjust --json examples/tidop_helmert_7.dat --decimal-comma").out;
    const json report = json::parse(out);
    EXPECT_EQ(report["parameters"].size(), 44U);
    EXPECT_EQ(report["statistics"].size(), 5U);
    EXPECT_EQ(report["points"][6].size(), 8U);
    EXPECT_EQ(report["points"][0]["dXsour"], 4157222.543);
    const std::regex numbers(R"(": (-?[0-9][^,\n]*))");
    std::sregex_iterator number(out.begin(), out.end(), numbers);
    EXPECT_EQ(std::distance(number, {}), 1 + 44 + 5 + 7 * 6);
    for (; number != std::sregex_iterator(); ++number) {
        char shortest[32] = {};
        std::to_chars(shortest, std::end(shortest), std::stod((*number)[1]));
        EXPECT_EQ((*number)[1], shortest);
    }
}

TEST(CommandLine, MarksPointsBeyondTheLimitOnATerminalOnly) {
    const Shell shell;
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    if (grantpt(terminal) != 0 || unlockpt(terminal) != 0) GTEST_SKIP() << "no terminals here";
    const std::string name = ptsname(terminal);
    const int keptOpen = open(name.c_str(), O_RDWR | O_NOCTTY);
    const std::string line =
        "kv_tr adjust examples/textbook_conformal_3.dat --type helmert --limit ";
    const Result plain = shell.Run(line + "0.02; " + line + "0.02 >" + name + "; NO_COLOR=1 " +
                                   line + "0.1 >" + name);
    close(keptOpen);
    std::string shown;
    for (char c = 0; read(terminal, &c, 1) == 1;) shown += c;
    close(terminal);
    EXPECT_EQ(plain.out.find('>'), plain.out.npos);
    EXPECT_EQ(std::ranges::count(shown, '>'), 3 + 2);
    EXPECT_NE(shown.find("0.029  > 0.020\x1b[0m\r\n"), shown.npos);
    EXPECT_NE(shown.find("0.149  > 0.100\r\n"), shown.npos);
}

}  // namespace
}  // namespace kv_tr::test
