// Exported transformations run by the programs that they are for, where those are installed.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <random>
#include <sstream>

#include "helpers/files.h"
#include "kv_tr/interchange/transformation_export.h"

namespace kv_tr::test {
namespace {

using enum TransformationFormat;

bool IsInstalled(const std::string& program) {
    return std::system(("command -v " + program + " >/dev/null 2>&1").c_str()) == 0;
}

class OtherPrograms : public testing::Test {
protected:
    const TemporaryFolder folder;
    std::mt19937_64 random{20260531};

    /// Between -size and size, the same on every machine.
    double Random(double size) {
        return (static_cast<double>(random() >> 11) * 0x1p-52 - 1.0) * size;
    }

    std::vector<Point> RandomPoints(Point origin) {
        std::vector<Point> points(40);
        for (Point& p : points) p = {origin.first + Random(1.5e5), origin.second + Random(1.5e5)};
        return points;
    }

    /// Random coefficients around 600 km; each degree bends by up to 100 m at 150 km.
    Transformation RandomOf(Type type) {
        Transformation t{.type = type, .a = {}, .b = {}};
        for (auto* series : {&t.a, &t.b}) (*series)[0] = 6e5 + Random(1e5);
        if (!IsPolynomial(type)) {
            const double scale = type == Type::kHelmert3 ? 1.0 : 1.0 + Random(1e-3);
            const double angle = Random(3.0);
            t.a[1] = scale * std::cos(angle);
            t.a[2] = scale * std::sin(angle);
            const bool similar = type == Type::kHelmert || type == Type::kHelmert3;
            t.b[1] = similar ? -t.a[2] : t.a[2] * 1.01;
            t.b[2] = similar ? t.a[1] : -t.a[1] * 0.99;
            return t;
        }
        for (int k = 1; k <= TermCount(type); ++k) {
            const auto index = static_cast<std::size_t>(k);
            const double degree = std::floor((std::sqrt(8.0 * k - 7.0) - 1.0) / 2.0);
            const double size = k == 1 ? 6e5 : k <= 3 ? 1.0 : 100.0 / std::pow(1.5e5, degree);
            t.a[index] = Random(size);
            t.b[index] = Random(size);
        }
        return t;
    }

    std::string Text(const TransformationRecord& record, TransformationFormat format) {
        const auto exported = ExportTransformation(record, format);
        EXPECT_TRUE(std::holds_alternative<std::string>(exported)) << FormatWord(format);
        return std::get<std::string>(exported);
    }

    /// What a command prints.
    std::string Output(const std::string& command) {
        const std::string name = folder.File("out");
        EXPECT_EQ(std::system(("cd " + folder.File("") + " && " + command + " >out").c_str()), 0);
        return ReadFile(name);
    }

    std::vector<double> Numbers(const std::string& text) {
        std::vector<double> numbers;
        std::istringstream words(text);
        for (std::string word; words >> word;)
            numbers.push_back(std::strtod(word.c_str(), nullptr));
        return numbers;
    }
};

constexpr Type kTenTypes[] = {Type::kHelmert,     Type::kAffine,      Type::kHelmert3,
                              Type::kAffine5,     Type::kBilinear,    Type::kPolynomial1,
                              Type::kPolynomial2, Type::kPolynomial3, Type::kPolynomial4,
                              Type::kPolynomial5};

TEST_F(OtherPrograms, CctTransformsAsTheRecordDoes) {
    if (!IsInstalled("cct")) GTEST_SKIP() << "cct is not installed";
    const auto check = [this](const TransformationRecord& record, TransformationFormat format) {
        const auto points = RandomPoints({record.transformation.a[0], record.transformation.b[0]});
        std::string lines;
        for (const Point point : points) {
            const auto [x, y] = OnMap(record.sourceAxes, point);
            lines += ShortestText(x) + " " + ShortestText(y) + " 0 0\n";
        }
        WriteFile(folder.File("in"), lines);
        std::string arguments = Text(record, format);
        arguments.pop_back();  // the line end
        const auto images = Numbers(Output("cct -d 12 " + arguments + " in"));
        ASSERT_EQ(images.size(), 4 * points.size()) << arguments;
        for (std::size_t i = 0; i < points.size(); ++i) {
            const Point own = OnMap(record.targetAxes, record.transformation.Apply(points[i]));
            EXPECT_NEAR(images[4 * i], own.first, 1e-9) << arguments;
            EXPECT_NEAR(images[4 * i + 1], own.second, 1e-9) << arguments;
        }
    };
    for (const Type type : kTenTypes) {
        for (const AxisMapping axes : {AxisMapping::kEn, AxisMapping::kNe, AxisMapping::kSe})
            check({.transformation = RandomOf(type), .sourceAxes = axes}, kProj);
        check({.transformation = RandomOf(type), .targetAxes = AxisMapping::kNw}, kProj);
    }
    check({.transformation = RandomOf(Type::kHelmert3)}, kProjHelmert);
}

TEST_F(OtherPrograms, ProjReadsTheOperationBetweenTwoSystems) {
    if (!IsInstalled("projinfo")) GTEST_SKIP() << "projinfo is not installed";
    const auto system = [](const std::string& name, const std::string& axes) {
        return "ENGCRS[\"" + name + "\",EDATUM[\"" + name + "\"],CS[Cartesian,2]," + axes +
               ",LENGTHUNIT[\"metre\",1]]";
    };
    const std::string northEast = "AXIS[\"x, up\", north],AXIS[\"y\",east]";
    TransformationRecord record{
        .transformation = {.type = Type::kAffine, .a = {100.5, 2, 3}, .b = {4, 5, -1e-9}},
        .sourceAxes = AxisMapping::kNe,
        .targetAxes = AxisMapping::kNe,
        .sourceCrs = system("town", northEast),
        .targetCrs = system("land", northEast),
        .fit = FitFigures{.sigma0 = 0.03}};
    WriteFile(folder.File("wkt"), Text(record, kWkt2));
    EXPECT_NE(Output("projinfo -o PROJ -q \"$(cat wkt)\"")
                  .find("+proj=affine +xoff=100.5 +s11=2 +s12=3 +yoff=4 +s21=5 +s22=-1e-09"),
              std::string::npos);
    record.targetAxes = AxisMapping::kEn;
    EXPECT_EQ(std::get<Refusal>(ExportTransformation(record, kWkt2)), Refusal::kOtherAxes);
    record.targetCrs = "EPSG:23700";
    EXPECT_TRUE(Text(record, kWkt2).starts_with("METHOD[")) << "not both are WKT";
}

constexpr const char* kScript = R"py(import sqlite3, sys
def run(name):
    space = {}
    exec(open(name + ".py").read(), space)
    formulas = [cell[1:].replace("$", "") for cell in open(name + ".sheet").read().split("\t")]
    query = open(name + ".sql").read()
    base = sqlite3.connect(":memory:")
    base.execute("CREATE TABLE points (id INTEGER, source_first REAL, source_second REAL)")
    for line in open("in"):
        a, b = map(float.fromhex, line.split())
        cells = {"A2": a, "B2": b}
        for cell, formula in zip(("C2", "D2", "E2", "F2"), formulas):
            cells[cell] = eval(formula, {}, cells)
        sheet = [cells["CDEF"[len(formulas) - 2 + i] + "2"] for i in (0, 1)]
        base.execute("DELETE FROM points")
        base.execute("INSERT INTO points VALUES (7, ?, ?)", (a, b))
        row = base.execute(query).fetchone()
        assert row[0] == 7
        print(*(float(n).hex() for n in (*space["transform"](a, b), *sheet, *row[1:])))
run(sys.argv[1])
)py";

constexpr const char* kProgram = R"c(#include <stdio.h>
void transform(double, double, double *, double *);
int main(void)
{
    double a, b;
    while (scanf("%la %la", &a, &b) == 2) {
        transform(a, b, &a, &b);
        printf("%a %a\n", a, b);
    }
    return 0;
}
)c";

TEST_F(OtherPrograms, FormulasGiveTheSameBitsInCAndPython) {
    const bool python = IsInstalled("python3") && IsInstalled("cc");
    if (!python) GTEST_SKIP() << "cc or python3 is not installed";
    WriteFile(folder.File("run.py"), kScript);
    WriteFile(folder.File("main.c"), kProgram);
    for (const Type type : kTenTypes) {
        const auto t = RandomOf(type);
        for (const auto& [ending, format] :
             {std::pair("py", kPython), {"sheet", kSpreadsheet}, {"sql", kSql}, {"c", kC}})
            WriteFile(folder.File(std::string("t.") + ending), Text({.transformation = t}, format));
        const auto points = RandomPoints({t.a[0], t.b[0]});
        std::ostringstream lines;
        lines << std::hexfloat;
        for (const Point point : points) lines << point.first << ' ' << point.second << '\n';
        WriteFile(folder.File("in"), lines.str());
        const auto ofC =
            Numbers(Output("cc -O2 -Wall -Werror -ffp-contract=off main.c t.c -o t && ./t <in"));
        const auto ofPython = Numbers(Output("python3 run.py t"));
        ASSERT_EQ(ofC.size(), 2 * points.size());
        ASSERT_EQ(ofPython.size(), 6 * points.size());
        for (std::size_t i = 0; i < points.size(); ++i) {
            const auto [first, second] = t.Apply(points[i]);
            for (const bool ofSecond : {false, true}) {
                const double own = ofSecond ? second : first;
                EXPECT_EQ(ofC[2 * i + ofSecond], own);
                EXPECT_EQ(ofPython[6 * i + ofSecond], own);
                EXPECT_NEAR(ofPython[6 * i + 2 + ofSecond], own, 1e-9) << "spreadsheet";
                EXPECT_NEAR(ofPython[6 * i + 4 + ofSecond], own, 1e-9) << "SQL";
            }
        }
    }
}

}  // namespace
}  // namespace kv_tr::test
