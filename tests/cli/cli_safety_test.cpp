// What the program refuses, and what it survives, so that no data are lost or misread.
#include <gtest/gtest.h>

#include <regex>

#include "cli/command_line.h"

namespace kv_tr::test {
namespace {

constexpr char kTransform[] = "kv_tr transform --points shift --type affine --keep-going ";

TEST_F(CommandLine, KeepsItsMessagesOutOfItsFilesWhenStandardStreamsAreClosed) {
    if (IsThroughWine()) GTEST_SKIP() << "Wine waits for ever where streams are closed";
    const std::string bad = Files()["bad"];
    ASSERT_EQ(Run(kTransform, bad), 1);
    const std::string image = out;
    EXPECT_EQ(Run("kv_tr adjust shift"), 0);
    const std::string log = out;

    EXPECT_EQ(Run(kTransform + std::string("--output new 2>&-"), bad), 1);
    EXPECT_EQ(Files()["new"], image);
    EXPECT_EQ(Run("kv_tr adjust shift --log log >&- | cat; tr -d '\\r' <log"), 0);
    EXPECT_EQ(out, log);
    EXPECT_NE(err.find("written"), err.npos) << err;
    EXPECT_EQ(Run(kTransform + std::string("<&- >&- 2>&-")), 1);
}

TEST_F(CommandLine, SaysWhenTheStandardOutputTakesNothing) {
    WriteFile(work + "p.trp", "0 1 0 0 0 1");
    for (const char* line :
         {"--help", "adjust --help", "--version", "types", "national", "adjust shift",
          "adjust shift --json", "params p.trp", "angle 1 2 3 --params p.trp",
          "transform bad --params p.trp --keep-going"}) {
        EXPECT_EQ(Run("kv_tr " + std::string(line) + " >/dev/full"), 1) << line;
        EXPECT_NE(err.find("could be written"), err.npos) << line << ": " << err;
    }
}

TEST_F(CommandLine, ReadsAndWritesNoFileUnderTwoNames) {
    WriteFile(work + "p.trp", "0 1 0 0 0 1");
    std::filesystem::create_symlink("shift", work + "link");
    std::filesystem::create_hard_link(work + "shift", work + "hard");
    std::filesystem::create_symlink("later", work + "dangling");
    std::filesystem::create_directory(work + "folder");
    for (const char* line : {
             "adjust shift --log new --save-points new",
             "adjust shift --log new --save-points folder/../new",
             "adjust shift --save-points dangling --log later",
             "adjust bad --save-points link --log hard",
             "transform bad --points shift --type affine --output $PWD/link",
             "transform bad --points link --type affine --output hard",
             "transform bad --params p.trp --output folder/../p.trp",
         }) {
        if (!WhyNotThroughWine(line).empty()) continue;
        const auto before = Files();
        EXPECT_EQ(Run("kv_tr " + std::string(line)), 2) << line << err;
        EXPECT_EQ(Files(), before) << line;
    }
    if (IsThroughWine()) return;  // which has no such links and files
    EXPECT_EQ(Run("kv_tr adjust shift --plot dangling.svg --save-points link"), 0) << err;
    EXPECT_EQ(Run("kv_tr adjust shift --log /dev/null --save-points /dev/null"), 0) << err;
}

TEST_F(CommandLine, RefusesNumbersWithDecimalCommasUnlessToldOfThem) {
    const std::string fit = "transform --points shift --type affine ";
    for (const auto& [line, text, bad] : {
             std::tuple<std::string, std::string, std::string>{
                 "adjust c --save-params x.trp", "a 0 0 0 0\nb;0,5;1,5;2,5;3,5\n", "c, line 2: "},
             {"adjust /dev/stdin --log x <c", "b 0,5 1 2 3\n", "stdin, line 1: "},
             {"transform bad --points c --type affine", "\nb\t1\t2,5\t3\t4\r\n", "c, line 2: "},
             {"angle 1 2 3 --points c --type affine", "b 1 2 3 4\r\rb 1,5 2,5 3 4", "c, line 3: "},
             {fit + "c --output x", "a 1 2\nb 1,5 2\n", "c, line 2: "},
             {fit + "<c", "1,5 2,5\n", "input, line 1: "},
         }) {
        if (!WhyNotThroughWine(line).empty()) continue;
        WriteFile(work + "c", text);
        const auto files = Files();
        EXPECT_EQ(Run("kv_tr " + line), 1) << line;
        EXPECT_NE(err.find(bad), err.npos) << err;
        EXPECT_NE(err.find("--decimal-comma"), err.npos) << err;
        EXPECT_EQ(Files(), files) << line;
    }
}

TEST_F(CommandLine, ReadsBackWhatItWroteWithDecimalCommas) {
    const std::string adjust = "kv_tr adjust --type helmert --json ";
    Run(adjust + "examples/textbook_conformal_3.dat");
    const std::string report = out;
    Run(adjust + "examples/textbook_conformal_3.dat --decimal-comma --save-points p");
    EXPECT_EQ(Run(adjust + "p --decimal-comma"), 0) << err;
    EXPECT_EQ(out, report);

    const std::string lines =
        "Győr,1;121,622\t-128,066\t\"rest 1,5\"\r\n\nB 141.228 187.718 x\n7 8\n";
    const std::string transform = "kv_tr transform --points p --type helmert --decimal-comma ";
    EXPECT_EQ(Run(transform, lines), 0) << err;
    const std::string image = out;
    EXPECT_TRUE(image.starts_with("Győr,1;1049422,")) << out;
    EXPECT_NE(image.find("\t\"rest 1,5\"\r\n\nB 1049414,"), std::string::npos) << out;
    EXPECT_EQ(Run(transform + "--keep-going", "A,1.5,2.5\nA 1,5\nA 1,5 2,x\n"), 1);
    EXPECT_EQ(out, "A,1.5,2.5\nA 1,5\nA 1,5 2,x\n") << "commas do not separate";
}

TEST_F(CommandLine, NeverPassesControlCharactersOnToTheTerminal) {
    const std::string escapes =
        "\x1B[31m\x7F\xC2\x9B"
        "Ő";
    WriteFile(work + "p", "A" + escapes + " 0 0 1 1\nB 1 0 2 1\nC 0 1 1 2\n");
    WriteFile(work + "bad" + escapes, "x" + escapes + "\n");
    WriteFile(work + "p.trp", "0 1 0 0 0 1");
    const std::regex controls("[\\x01-\\x09\\x0B-\\x1F\\x7F]|\xC2[\x80-\x9F]");
    const std::string name = "\"$(printf '\\033[31m\\177\\302\\233Ő')\"";
    for (const auto& [line, shown] : {
             std::pair<std::string, std::string>{"adjust p | tr -d '\t'", "A_[31m__Ő   "},
             {"adjust p --json", "\"A\\u001b[31m\\u007f\\u009bŐ\""},
             {"adjust p --exclude " + name, "_[31m__Ő"},
             {"adjust bad" + name, "bad_[31m__Ő"},
             {"adjust p --log x" + name + " --plot " + name, "_[31m__Ő"},
             {"transform bad" + name + " --params p.trp", "bad_[31m__Ő, line 1: "},
             {"transform bad --params p.trp --output no" + name + "/x", "no_[31m__Ő/x"},
             {"params " + name, "_[31m__Ő"},
             {"types --language " + name, "_[31m__Ő"},
         }) {
        if (!WhyNotThroughWine(line).empty()) continue;
        Run("kv_tr " + line);
        std::erase(out, '\t');
        EXPECT_NE((out + err).find(shown), out.npos) << line << "\n" << out << err;
        EXPECT_FALSE(std::regex_search(out + err, controls)) << line << "\n" << out << err;
    }
}

}  // namespace
}  // namespace kv_tr::test
