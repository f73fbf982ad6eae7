// The program as a user runs it: command lines and files in, exit code, texts and files out.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <regex>

#include "cli/command_line.h"
#include "kv_tr/text/code_page.h"

namespace kv_tr::test {
namespace {

TEST_F(CommandLine, ReportsAndExitsAsPromisedAndFailingChangesNoFile) {
    const std::string swiss = "kv_tr adjust adjustment/swiss_helmert_9.dat --type helmert";
    WriteFile(work + "sigmas", "A 0 0 1 1 1 2\nB 1 0 2 1 1 2\nC 0 1 1 2 1 2\n");
    WriteFile(work + "zero", "A 0 0 1 1 1\nB 1 0 2 1 0\nC 0 1 1 2 1\n");
    const std::tuple<std::string, int, std::string, std::string> cases[] = {
        // line, exit code, and regular expressions for parts of the output and of the errors
        {"kv_tr types", 0,
         "^type .*\nhelmert .*(\n.*)*\nbilinear +6 +4  Bilinear \\(trapezoid\\) tr", "^$"},
        {"env LC_ALL= LANG=hu_HU.UTF-8 kv_tr types", 0, "^típus", "^$"},
        {"kv_tr adjust shift --type poly6", 2, "^$", "poly6; .* helmert3, .* poly5"},
        {"kv_tr adjust shift", 0, "\tAFFINE .*\n\ta0 = 100\\.000\n(.*\n)*\t.*Y =0\\.000 m",
         "^W3: .*HELMERT.*\n$"},
        {"kv_tr adjust shift --inverse --decimal-comma", 0, "\ta0 = -100,000\n",
         "^W3: .*HELMERT.*\n$"},
        {"kv_tr adjust examples/greek_order2_15.dat --type poly4 --exclude 3", 0,
         "\t3\\. order(.*\n)*\tExcluded points:\n.*\n +3 ", "now: 3\\. order"},
        {"kv_tr adjust shift --exclude A --exclude X", 1, "^$", "identifier X\n$"},
        {"kv_tr adjust shift --type poly2", 1, "^$", "^To few GCPs .*!\nshift: .* 6 .* 3"},
        {"kv_tr adjust gone", 1, "^$", "^File open error:gone\n$"},
        {"kv_tr adjust short", 1, "^$", "^Invalid .*\nshort, line 3: .*: B 1 1 2\n$"},
        {"kv_tr adjust huge --save-points no/x --save-params x.trp", 1,
         "a0 = ", "DET=0 !\nW0: .*\nFile open error:no/x\nThe parameters were not saved"},
        {"kv_tr adjust shift --plot x.png", 2, "^$", "file ends in \\.svg: x\\.png\n"},
        {"kv_tr adjust shift --report x.txt", 2, "^$", "ends in \\.html or \\.pdf: x\\.txt\n"},
        {"kv_tr adjust shift --report-date 2026-02-30", 2, "^$", "YYYY-MM-DD\\): 2026-02-30\n"},
        {"kv_tr adjust shift --report r.html --log r.html", 2, "^$", "same file: "},
        {"SOURCE_DATE_EPOCH=x kv_tr adjust shift --report r.html", 1,
         "a0 = ", "SOURCE_DATE_EPOCH: .*: x\n"},
        {"SOURCE_DATE_EPOCH=86400 kv_tr adjust shift --report r.html && sha256sum shift && "
         "grep -oE '1970-01-02|[0-9a-f]{64}' r.html",
         0, "\n([0-9a-f]{64})  shift\n1970-01-02\n\\1\n$", "^W3: "},
        {"cd examples/two_lists && kv_tr adjust old_survey.txt --target new_survey.txt --type "
         "helmert "
         "--report $OLDPWD/r.html >$OLDPWD/log; grep -oE '(old|new)_survey.txt' $OLDPWD/r.html",
         0, "^old_survey.txt\nnew_survey.txt\n$", ""},
        {"kv_tr adjust shift --report no/x.html", 1, "a0 = ", "File open error:no/x\\.html\n$"},
        {"kv_tr adjust shift --log /dev/full", 1, "a0 = 100", "could be written: /dev/full\n$"},
        {"kv_tr adjust examples/qgis_order1_4.dat --type bilinear --exclude 1 --exclude 2 --json",
         0, "\"type\": 0,(.*\n)*.*\"bNotUsed\": true(.*\n)*  \"events\": \\[\n +1,\n +0\n",
         "HELMERT"},
        {"kv_tr adjust examples/tidop_helmert_7.dat --json --decimal-comma", 0,
         "\"dXsour\": 4157222\\.543,(.*\n)*.*\"dXerr\": -0\\.0002.*\n.*\"dYerr\": -0\\.0001", "^$"},
        {"kv_tr adjust gone --json --type poly2", 1, "\"type\": 2,", "."},
        {"kv_tr adjust huge --json", 1, "\"dA0\": null,(.*\n)*.*\"dRmsErr\": null", "DET=0"},
        {"kv_tr adjust $(printf '\\377') --json", 1, "error:\uFFFD\",\n", "."},
        {"kv_tr transform bad --points shift --type affine --keep-going", 1,
         "^A 101.000 202.000\nB x 2\nC 1e400 2\nD\nE 101.000 202.000\n$", "^W3: .*\n3 .* 5 .*\n$"},
        {"kv_tr transform bad --points shift --type affine --output old", 1, "^$", "line 2"},
        {"kv_tr adjust shift --save-params new.trp", 0, "a0 = 100", "^W3: .*HELMERT.*\n$"},
        {"kv_tr params new.trp", 0, "^\ta0 = 100\\.000\n(.*\n)*\tX2 = b0 .*\n\n\n\n$", "^$"},
        {"kv_tr params new.trp --format all", 1, "^$", "all: .* hold the type AFFINE"},
        {"kv_tr adjust shift --type poly1 --save-params new.all", 0,
         "a1 = ", "^W3: .*HELMERT.*\n$"},
        {"kv_tr params new.all --format all", 0, "\n\n sy = .*\n  1 (.*\n){2}  3 .*\n\n$", "^$"},
        {"kv_tr params new.all --inverse", 1, "^$", "Only linear .* 1\\. order"},
        {"kv_tr adjust shift --type poly1 --save-params old.prm", 1, "a1 = ", "hold the type 1\\."},
        {"kv_tr params binary.trp", 1, "^$", "^Invalid .*\nbinary\\.trp: .* six numbers"},
        {"kv_tr params flat.trp --inverse", 1, "^$", "no inverse"},
        {"kv_tr transform bad --params new.trp", 1, "^A 101.0+ 202.0+\n$",
         "^bad, line 2: .*: B x 2\n$"},
        {"kv_tr transform bad --params gone.trp --output old", 1, "^$", "open .*\nNothing was"},
        {"echo 1 2 | kv_tr transform --params new.trp --inverse", 0, "^-99\\.000 -198.000\n$", ""},
        {"echo 1 2 | kv_tr transform --national METER_OL --inverse --decimals 6", 0,
         "^1\\.896484 3\\.792968\n$", "^$"},
        {"echo kv_tr transform --points examples/greek_order2_15.dat --type poly2 --inverse >i", 0,
         "^$", "^$"},
        {"echo 7 360028.79 4490989.86 | $(cat i)", 0, "^7 -10157\\.9\\d+ -21121\\.0\\d+\n$", "^$"},
        {"echo A 0 0 | $(cat i)", 1, "^$",
         "^standard .* line 1: .* inverse, .* outside .*: A 0 0\n$"},
        {"printf 'A 0 0\\nB x\\nC 0 1\\n' | $(cat i) --keep-going", 1, "^A 0 0\nB x\nC 0 1\n$",
         "^3 of 3 .*\nWithout an inverse: 2; only a point far outside .*\n$"},
        {"echo 650000 250000 | kv_tr transform --national EOV_STG_10e --decimals 0 | "
         "kv_tr transform --national EOV_STG_10e --inverse",
         0, "^6(50000|49999)\\.\\d+ 2(50000|49999)\\.\\d+\n$", "^These parameters do not .*\n$"},
        {"echo 1 2 | kv_tr transform --params flat.trp --inverse", 1, "^$", "no inverse"},
        {"echo kv_tr distortion --points examples/greek_order2_15.dat --type poly2 >d", 0, "^$",
         "^$"},
        {"$(cat d) --at -5 3 --at 1 2 --unit gon", 0,
         "^ +Y +X +M .*\n-5\\.000 +3\\.000 +29\\.078 +-14\\.507 +14\\.570 +-1\\.1138541 "
         "+31\\.6465523 "
         "+0\\.0027746\n +1\\.000 (.*\n){2}Scales .* 0\\.999849373, .* -9166\\.023 "
         "-17004\\.215\\.\n",
         "^$"},
        {"printf 'A 1 2\\n\\nB x\\nC 3 4\\n' | $(cat d) --json", 1,
         "\"scale\": 0\\.99984(.*\n)*.*\"id\": \"A\",\n(.*\n)*.*\"areaScale\": 0\\.999",
         "^standard input, line 3: .*: B x\n$"},
        {"kv_tr distortion gone --national OL_METER", 1, "M \\[ppm\\]", "^File open error:gone\n$"},
        {"kv_tr distortion --at 0 0 --national OL_METER --language vi", 0, " –  ", "^$"},
        {"kv_tr distortion --at 0 x --national OL_METER", 2, "^$", "number: x\n"},
        {"kv_tr angle 1.5 2 3 --params new.trp", 0, "^1\\.(5000|4999)\\d{5}\n$",
         "^± 0.0\\d+ rad: "},
        {"kv_tr angle 359.99999999 0 0 --national OL_METER --unit deg", 0, "^0\\.0{7}\n$", "."},
        {"echo 1e200 0 | kv_tr transform --national STG_HER", 1, "^$", "line 1: "},
        {"kv_tr angle 1 1e200 1e200 --national STG_HER", 1, "^$", "1e200 1e200\n"},
        {"printf '1,5\\n2,5\\n3,0\\n4,0\\n5,0\\n6,0\\n' >c.trp", 0, "", ""},
        {"cp c.trp c.txt; echo '{\"a\": x' >b", 0, "^$", "^$"},
        {"kv_tr params c.txt", 1, "^$", "\nc\\.txt holds no .* PROJ "},
        {"kv_tr params b", 1, "^$", "^Invalid .*\nb: line 1, column 7: .* JSON\\.\n$"},
        {"kv_tr adjust shift --type helmert --export proj --axes ne,en", 0,
         "^\\+proj=pipeline \\+step \\+proj=axisswap \\+order=2,1 \\+step \\+proj=affine \\+xoff=.*"
         "\n$",
         "^$"},
        {"kv_tr adjust examples/greek_order2_15.dat --type poly2 --export json=g.json --export "
         "sql=g.sql --source-crs old",
         0, "a1 = ", ""},
        {"grep -c target_second g.sql; kv_tr params g.json --export proj=g.proj", 0,
         "^1\n2\\. order", "^$"},
        {"cp g.proj g.x; echo 7 -10157.9 -21121 >7; kv_tr transform 7 --params g.x --decimals 9 "
         ">8; kv_tr transform 7 --params g.json --decimals 9 | cmp - 8",
         0, "^$", "^$"},
        {"echo 7 360028.79 4490989.86 | kv_tr transform --params g.json --inverse", 0,
         "^7 -10157\\.9\\d+ -21121\\.0\\d+\n$", "^$"},
        {"kv_tr params g.json --export wkt2", 1, "^$", "^WKT 2 .* six parameters only; .* 2\\. "},
        {"kv_tr params g.json --type poly3", 1, "^$", "g\\.json.*2\\. order"},
        {"kv_tr params --national OL_METER --export world=m.tfw; kv_tr params m.tfw --type "
         "helmert --format trp",
         0, "1\\.89648384\n.*\n.*\n.*\n1\\.89648384\n$", "^$"},
        {"kv_tr adjust huge --export json=old", 1, "a0 = ", "was not exported"},
        {"kv_tr adjust shift --export json --export proj", 2, "^$", "Only one format"},
        {"kv_tr adjust shift --export proj=x --log x", 2, "^$", "same file: "},
        {"kv_tr adjust shift --export kml", 2, "^$", "kml; .* json, proj, "},
        {"kv_tr params --national OL_METER --axes ne", 2, "^$", "^--axes .* --export\n$"},
        {"kv_tr adjust shift --target-crs EPSG:1", 2, "^$", "^--target-crs .* --export\n$"},
        {"kv_tr adjust shift --export proj --axes up", 2, "^$", "up; .* en, ne, "},
        {"kv_tr transform gone --params new.trp", 1, "^$", "^File open error:gone\n"},
        {"kv_tr angle 50 650000 240000 --national EOV_STG_10e", 0, "^2\\.876057037\n$", "."},
        {"kv_tr params c.trp", 1, "^$", "^c\\.trp: .*--decimal-comma"},
        {"kv_tr params c.trp --decimal-comma --format trp", 0, "^1\\.500\n2\\.5", "^$"},
        {"kv_tr --language=hu", 2, "^$", "^egy parancs kell: adjust, .*\nTöbbet a --help mond.\n$"},
        {"kv_tr fit shift", 2, "^$", "not expected: fit shift\n"},
        {"kv_tr angle 1 --unit gon", 2, "^$", "^missing: FIRST, SECOND\n"},
        {"kv_tr adjust shift --log --decimal-comma", 2, "^$", "value is missing: --log\n"},
        {"kv_tr adjust shift --inverse=x", 2, "^$", "takes no value: --inverse\n"},
        {"kv_tr types --help --language vi", 0, "\nCách dùng: kv_tr types \\[TÙY CHỌN\\]\n", "^$"},
        {"cp $(command -v kv_tr) . && printf '[2057]\n1035=kind\n' >KV_Tr.res && ./kv_tr types", 0,
         "^kind +number", "^$"},
        {"echo 1034 >>KV_Tr.res && ./kv_tr types; rm kv_tr KV_Tr.res", 0, "^type  ",
         "^/.*/KV_Tr\\.res, line 3: damaged"},
        {"kv_tr adjust shift --log shift", 1, "a0 = ", "cannot take the place"},
        {swiss, 0, "YX=0\\.034 m", "^W8: Point 66\\.301 .*: 0\\.092 m, p = 0\\.029\\. .*\n$"},
        {swiss + " --statistics --sigma 0,0141421356237", 0,
         "\nChecked: .*10⁻¹⁰ m\n(.*\n)*s0 +0\\.0255 +14 \\(r\\)\n(.*\n)*χ² = 45\\.67 .*\n(.*\n)*φ "
         "+-1\\."
         "28663592\\d+E-06 +1\\.63667\\d+E-06\n(.*\n)*86\\.526 +0\\.0377 +0\\.0375 +0\\.77 ",
         "^W8: .*\nW9: The residuals are 1\\.81 times .* 0\\.63 to 1\\.37 "},
        {swiss + " --alpha 0.02 --language hu", 0, "", "^$"},
        {"kv_tr adjust adjustment/topo_poly2_52.dat --type poly2 --advise", 0,
         "\n\\* 3\\. order .* 37\\.4688 (.*\n)*Advised type: 3\\. .* 4\\. order",
         "^W4: .*\nW8: Point 48 "},
        {"kv_tr adjust adjustment/truth_two_places_affine.dat --save-params n.trp", 1,
         "a0 = ", "W2: .*only 2 distinct places .*\nThe parameters were not saved"},
        {"kv_tr adjust adjustment/truth_two_places_affine.dat --json", 1,
         "\"places\",\n +\"order\": 0,\n +\"count\": 2,\n +\"needed\": 3,", "^W2: "},
        {"kv_tr adjust adjustment/truth_strip_affine.dat --save-params n.trp", 1,
         "a0 = ", "^W1: .*up to 0\\.12 m .* → Use the accurate solution\nThe parameters were not"},
        {"kv_tr adjust adjustment/truth_strip_affine.dat --save-params n.trp --force; rm n.trp", 0,
         "a0 = ", "^W1: .*solution\n$"},
        {"kv_tr adjust adjustment/truth_strip_affine.dat --solution accurate --save-params n.trp",
         0, "a0 = ", "^$"},
        {"kv_tr adjust shift --sigma columns", 1, "^$", "^Invalid .*\nshift, line 1: "},
        {"kv_tr adjust sigmas --sigma columns --type helmert", 1, "^$", "^The standard dev.* HELM"},
        {"kv_tr adjust zero --sigma columns", 1, "^$", "zero, line 2: .* must be positive: B "},
        {"kv_tr adjust shift --sigma 0", 2, "^$", "0\n"},
        {"echo 600000 250000 | kv_tr transform --sigma --points adjustment/swiss_helmert_9.dat "
         "--type "
         "helmert",
         0, "^600000\\.\\d{3} 250000\\.\\d{3} 0\\.010 0\\.010\n$", "^$"},
        {"echo 700000 250000 | kv_tr transform --sigma --points adjustment/swiss_helmert_9.dat "
         "--type "
         "helmert",
         0, " 0\\.167 0\\.167\n$", "^W7: 1 points .* 9\\d+ m; .* 0\\.17 m\\.\n$"},
        {"echo 1 2 | kv_tr transform --sigma --national STG_HER", 2, "^$",
         "--sigma needs --points"},
        {"kv_tr national --language hu", 0,
         "\nBOV_EOV +20 +BOV +EOV +0\\.050 +Budapest\n(.*\n)*20-25: .* becsültek", "^$"},
        {"kv_tr params --national EOV_STG_10e --format all", 0,
         "sy = ", "^Coefficients 0 to 3 are"},
        {"echo kv_tr adjust examples/textbook*.dat --type helmert --limit >l", 0, "^$", "^$"},
        {"$(cat l) 0.02", 0, "^[^>]*0\\.029 *\n[^>]*$", "^$"},
        {"script -qec \"$(cat l) 0.02\" /dev/null", 0, "0\\.029  > 0\\.020\x1b\\[0m\r\n", "^$"},
        {"NO_COLOR=1 script -qec \"$(cat l) 0.1\" /dev/null", 0, "0\\.149  > 0\\.100\r\n", "^$"},
    };
    for (const auto& [line, code, output, errors] : cases) {
        if (!WhyNotThroughWine(line).empty()) continue;
        SCOPED_TRACE(line);
        const auto before = Files();
        EXPECT_EQ(Run(line), code);
        EXPECT_TRUE(std::regex_search(out, std::regex(output))) << out;
        EXPECT_TRUE(std::regex_search(err, std::regex(errors))) << err;
        EXPECT_TRUE(code == 0 || Files() == before);
        EXPECT_TRUE(line.find("--json") == line.npos || nlohmann::json::accept(out));
    }
}

TEST_F(CommandLine, TransformsTheCoordinatesAndKeepsEveryOtherByte) {
    const std::string nul("\0", 1);
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"-", "A 1 2\r\n\"B\";3,4; rest\t5 \n\n \t;\nC\t5'6\r7 8",
         "A 101.000 202.000\r\n\"B\";103.000,204.000; rest\t5 \n\n \t;\nC\t105.000'206.000\r"
         "107.000 208.000"},
        {"", "\xEF\xBB\xBF\x31 2 3\n", "\xEF\xBB\xBF\x31 102.000 203.000\n"},
        {"--decimals 010", "\xFBr" + nul + " 0.5 0 \xFF",
         "\xFBr" + nul + " 100.5000000000 200.0000000000 \xFF"},
        {"--no-id", "1;2;3\n", "101.000;202.000;3\n"},
    };
    for (const auto& [options, input, output] : cases) {
        const std::string line = "kv_tr transform --points shift --type poly1 " + options;
        EXPECT_EQ(Run(line, input), 0) << err;
        EXPECT_EQ(out, output);
        Run(line + " --output new", input);
        EXPECT_EQ(out + Files()["new"], output);
    }
    Run("kv_tr transform new --points shift --type affine --output new");
    EXPECT_EQ(Files()["new"], "101.000;302.000;203.000\n");
}

TEST_F(CommandLine, TransformsLongInputsInTheirOrder) {
    std::string input, shifted;
    for (int i = 0; i < 60000; ++i) {
        const std::string end = "." + std::to_string(100 + i % 900) + (i % 2 == 0 ? "\r\n" : "\n");
        input += "P" + std::to_string(i) + " 1.000 " + std::to_string(i) + end;
        shifted += "P" + std::to_string(i) + " 101.000 " + std::to_string(i + 200) + end;
    }
    const std::string line = "kv_tr transform --points shift --type affine";
    for (const char* surroundings : {"", "ulimit -s 137438953472 && "}) {  // no room for threads
        EXPECT_EQ(Run(surroundings + line, input), 0) << err;
        EXPECT_EQ(out, shifted);
    }
    const std::string tooLong = std::string(2 << 20, '7') + "\n";
    EXPECT_EQ(Run(line, input + "bad line here\n" + input + tooLong), 1);
    EXPECT_EQ(out, shifted);
    EXPECT_NE(err.find("line 60001: "), err.npos) << err;
    EXPECT_EQ(Run(line + " --keep-going", input + "bad line here\n" + input), 1);
    EXPECT_EQ(out, shifted + "bad line here\n" + shifted);
}

TEST_F(CommandLine, AnswersEachLineBeforeItWaitsForTheNext) {
    Run("mkfifo ask answer; kv_tr transform --points shift --type affine <ask >answer & "
        "exec 3>ask 4<answer; for i in 1 2; do echo $i 0 >&3; timeout 60 head -n 1 <&4; done; "
        "exec 3>&-; wait");
    EXPECT_EQ(out, "101.000 200.000\n102.000 200.000\n");
}

TEST_F(CommandLine, LeavesNothingBehindWhenItIsInterruptedOrFindsNoRoom) {
    std::string points;  // whose log takes more than the room below
    for (int i = 0; i < 2000; ++i)
        points += "P" + std::to_string(i) + " 1 " + std::to_string(i * i) + " 2 3\n";
    WriteFile(work + "many", points);
    const auto before = Files();
    if (IsThroughWine())
        GTEST_SKIP() << "Wine ends of it; the tests of Windows interrupt otherwise";
    EXPECT_EQ(Run("ulimit -f 100; kv_tr adjust many --type helmert --log old >/dev/null"), 1);
    EXPECT_NE(err.find("Not everything could be written: old"), std::string::npos) << err;
    EXPECT_EQ(Files(), before);
    Run("mkfifo ../ask; kv_tr transform ../ask --points shift --type affine --output old & "
        "exec 3>../ask; yes A 1 2 | head -n 100000 >&3; kill $!; wait $!");
    EXPECT_EQ(Files(), before);
}

TEST_F(CommandLine, SavesTheLogAndThePointsInTheCodePageWithCrLfAndThePlot) {
    Run("kv_tr adjust examples/textbook_conformal_3.dat --exclude C --language hu --decimal-comma "
        "--log log --save-points points --plot plot.SVG | sed 's/$/\\r/'");
    EXPECT_TRUE(out.starts_with("\tTranszformációs jegyzőkönyv\r\n\r\n\tHELMERT"));
    EXPECT_EQ(Files()["log"], ToCodePage(out, CodePage::kWindows1250));
    const std::string points = Files()["points"];
    EXPECT_EQ(points.find("A        121,622       -128,066    1049422,400      51089,200\r\n"),
              19U);
    EXPECT_TRUE(Files()["plot.SVG"].starts_with("<?xml"));
}

}  // namespace
}  // namespace kv_tr::test
