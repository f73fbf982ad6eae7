// Transformations into the formats of other programs and back.
#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "helpers/files.h"
#include "helpers/sample_points.h"
#include "kv_tr/interchange/transformation_export.h"
#include "kv_tr/interchange/transformation_import.h"

namespace kv_tr::test {
namespace {

using enum TransformationFormat;

constexpr Type kTypes[] = {Type::kHelmert,     Type::kAffine,      Type::kHelmert3,
                           Type::kAffine5,     Type::kBilinear,    Type::kPolynomial1,
                           Type::kPolynomial2, Type::kPolynomial3, Type::kPolynomial4,
                           Type::kPolynomial5, Type::kStgToEov10e, Type::kFathomToMetre};
constexpr AxisMapping kAxes[] = {AxisMapping::kEn, AxisMapping::kNe, AxisMapping::kWs,
                                 AxisMapping::kSw, AxisMapping::kEs, AxisMapping::kWn,
                                 AxisMapping::kSe, AxisMapping::kNw};

/// A transformation of a type, zero beyond its last coefficient.
Transformation Of(Type type) {
    Transformation t = General(type);
    const auto count = static_cast<std::size_t>(IsPolynomial(type) ? TermCount(type) + 1 : 3);
    for (std::size_t k = count; k < t.a.size(); ++k) t.a[k] = t.b[k] = 0.0;
    return t;
}

std::string Text(const TransformationRecord& record, TransformationFormat format) {
    const auto exported = ExportTransformation(record, format);
    return std::holds_alternative<Refusal>(exported) ? "refused" : std::get<std::string>(exported);
}

TransformationRecord Read(const std::string& text, Type linearType = Type::kAffine) {
    const auto [record, problem] =
        ReadTransformation(text, FormatOfText(text).value_or(kWorldFile), linearType);
    EXPECT_FALSE(problem) << text << ProblemText(*problem, TextsIn(kEnglish));
    return record;
}

TEST(JsonRecord, KeepsAllThatIsKnownOfEveryType) {
    for (const Type type : kTypes) {
        const auto points = PointsBy(Of(type), 30, 0.02);
        auto record = FittedRecord(points, Of(type));
        EXPECT_EQ(record.fit->used, 30U);
        record.points.clear();
        record.sourceAxes = AxisMapping::kSw;
        record.targetAxes = AxisMapping::kNe;
        record.sourceCrs = "PROJCRS[\"Űj\\\"\n\u0085]";
        record.targetCrs = "EPSG:23700";
        record.madeFrom = "town.dat";
        EXPECT_EQ(Read("\xEF\xBB\xBF " + Text(record, kJson)), record);
        const TransformationRecord bare{.transformation = Of(type)};
        EXPECT_EQ(Read(Text(bare, kJson)), bare);
    }
}

TEST(JsonRecord, HasTheMembersOfItsSchema) {
    const auto schema =
        nlohmann::json::parse(ReadFile(EXAMPLES "/../docs/transformation.schema.json"));
    for (const Type type : {Type::kPolynomial2, Type::kHelmert}) {
        const auto json =
            nlohmann::json::parse(Text(FittedRecord(PointsBy(Of(type), 9, 0.02), Of(type)), kJson));
        for (const auto& [name, value] : json.items()) {
            ASSERT_TRUE(schema["properties"].contains(name)) << name;
            if (value.is_object()) {
                for (const auto& [inner, number] : value.items())
                    EXPECT_TRUE(schema["properties"][name]["properties"].contains(inner)) << inner;
            }
        }
        for (const auto& name : schema["required"]) EXPECT_TRUE(json.contains(name)) << name;
    }
}

TEST(JsonRecord, RefusesWhatIsWrongAndSaysWhere) {
    using Trouble = ImportProblem::Kind;
    const auto read = [](const std::string& patch) {
        auto json = nlohmann::json::parse(Text({.transformation = Of(Type::kPolynomial2)}, kJson));
        json.merge_patch(nlohmann::json::parse(patch));
        return ReadTransformation(json.dump(), kJson).problem.value_or(ImportProblem{});
    };
    const std::pair<const char*, ImportProblem> cases[] = {
        {R"({"format": "other"})", {.text = "format"}},
        {R"({"version": 2})", {.kind = Trouble::kNewer, .text = "2"}},
        {R"({"version": 0.5})", {.text = "version"}},
        {R"({"type": 8})", {.text = "type"}},
        {R"({"type": 1e300})", {.text = "type"}},
        {R"({"type": 3})", {.text = "a"}},
        {R"({"type": 0})", {.text = "linear"}},
        {R"({"origin": [1, 2, 3]})", {.text = "origin"}},
        {R"({"b": [1, 2, "3", 4, 5, 6]})", {.text = "b"}},
        {R"({"source_axes": "nn"})", {.text = "source_axes"}},
        {R"({"source_crs": 1})", {.text = "source_crs"}},
        {R"({"fit": {"n": -1}})", {.text = "fit.n"}},
        {R"({"hull": [[1, 2], [3]]})", {.text = "hull"}},
        {R"({"extent": [[1, 2]]})", {.text = "extent"}}};
    for (const auto& [patch, problem] : cases) EXPECT_EQ(read(patch), problem) << patch;
    const auto broken = [](const std::string& text) {
        return *ReadTransformation(text, kJson).problem;
    };
    EXPECT_EQ(broken("{\n \"a\": x}"),
              (ImportProblem{.kind = Trouble::kNoJson, .line = 2, .column = 7}));
    EXPECT_EQ(broken("{\"a\": 1e999}").kind, Trouble::kNotFinite);
    EXPECT_EQ(broken("[]").text, "format");
    EXPECT_EQ(broken("").kind, Trouble::kNoJson);
    EXPECT_EQ(Read(R"({"format": "plane-transformation", "version": 1, "type": -1,
                       "linear": [1, 2, 3, 4, 5, 6], "extent": [[1, 2], [5, 9]]})")
                  .hull,
              (std::vector<Point>{{1, 2}, {5, 2}, {5, 9}, {1, 9}}));
}

TEST(ProjString, ComesBackWithAxesAndAllDigits) {
    for (const Type type : kTypes) {
        for (const AxisMapping source : kAxes) {
            for (const AxisMapping target : kAxes) {
                TransformationRecord record{
                    .transformation = Of(type), .sourceAxes = source, .targetAxes = target};
                const auto read = Read(Text(record, kProj), type);
                auto& [wanted, a, b] = record.transformation;
                if (type == Type::kBilinear) {  // PROJ has the order 2 with u² and v²
                    std::swap(a[4], a[5]);
                    std::swap(b[4], b[5]);
                    wanted = Type::kPolynomial2;
                }
                if (type == Type::kStgToEov10e) wanted = Type::kPolynomial5;
                EXPECT_EQ(read, record) << Text(record, kProj);
            }
        }
    }
    TransformationRecord turned{.transformation = Of(Type::kHelmert)};
    const auto back = Read(Text(turned, kProjHelmert)).transformation;
    for (std::size_t k = 0; k < 3; ++k) {  // sine and cosine round
        EXPECT_NEAR(back.a[k], turned.transformation.a[k], 1e-15);
        EXPECT_NEAR(back.b[k], turned.transformation.b[k], 1e-15);
    }
}

TEST(ProjString, MeansWhatPrintedExamplesMean) {
    const auto image = [](const std::string& text, Point point) {
        const auto record = Read(text);
        return OnMap(record.targetAxes, record.transformation.Apply(point));
    };
    const std::string affine = "proj=affine xoff=1000 yoff=2000 s11=2 s12=3 s21=5 s22=7";
    EXPECT_EQ(image(affine, {10, 20}), (Point{1080, 2190}));
    const auto swapped =
        Read("+proj=pipeline +step +proj=axisswap +order=-1,-2\n +step +" + affine);
    EXPECT_EQ(swapped.sourceAxes, AxisMapping::kWs);
    const Point turned = image("+proj=helmert +x=1000 +y=2000 +s=2 +theta=-108000", {10, 20});
    EXPECT_NEAR(turned.first, 997.320508076, 1e-9);
    EXPECT_NEAR(turned.second, 2044.641016151, 1e-9);
    const Point images[] = {{14, 614}, {114, 2614}, {698, 9698}, {3601, 33701}, {16620, 113220}};
    for (int degree = 1; degree <= 5; ++degree) {
        Transformation t{.type = static_cast<Type>(degree), .a = {10}, .b = {20}};
        for (int k = 1; k <= TermCount(t.type); ++k) {
            t.a[static_cast<std::size_t>(k)] = k;
            t.b[static_cast<std::size_t>(k)] = 100 + k;
        }
        EXPECT_EQ(image(Text({.transformation = t}, kProj), {12, 23}), images[degree - 1]);
    }
}

TEST(ProjString, RefusesWhatMeansMore) {
    const std::pair<const char*, const char*> cases[] = {
        {"+proj=affine +s13=2", "+s13=2"},
        {"+proj=affine +inv", "+inv"},
        {"+proj=affine +xoff=1,2", "+xoff"},
        {"+proj=affine +xoff=one", "+xoff"},
        {"+proj=helmert +x=1 +s=2", "+theta"},
        {"+proj=utm +zone=33", "+proj=utm"},
        {"+proj=horner +deg=6", "+deg=6"},
        {"+proj=horner +deg=1 +fwd_u=1,2 +fwd_v=1,2,3 +fwd_origin=0,0", "+fwd_u"},
        {"+proj=horner +deg=1 +fwd_u=1,2,3 +fwd_v=1,2,3 +fwd_origin=0,0 +uneg", "+uneg"},
        {"+proj=pipeline +step +proj=affine +step +proj=affine", "+proj=affine"},
        {"+proj=pipeline +inv +step +proj=affine", "+inv"},
        {"+proj=pipeline +step +proj=axisswap +order=2,1", "+proj"},
        {"+proj=pipeline +step +proj=axisswap +order=1,1 +step +proj=affine", "+order"}};
    for (const auto& [text, part] : cases) {
        const auto problem = ReadTransformation(text, kProj).problem;
        EXPECT_EQ(problem.value_or(ImportProblem{}).text, part) << text;
    }
}

TEST(WorldFile, PutsCentresAndCornersOfPixelsWhereTheyBelong) {
    const TransformationRecord record{.transformation = {.type = Type::kAffine,
                                                         .a = {440720.5, 2.5, 0.3},
                                                         .b = {3751320.25, 0.2, 2.4}}};
    EXPECT_EQ(Text(record, kWorldFile), "2.5\n0.2\n-0.3\n-2.4\n440721.6\n3751319.15\n");
    EXPECT_EQ(Read(Text(record, kWorldFile)), record);
    EXPECT_EQ(Read(Text(record, kGeotransform)), record);
    auto swapped = record;
    swapped.sourceAxes = AxisMapping::kSe;
    swapped.targetAxes = AxisMapping::kNw;
    const auto onMaps = Read(Text(swapped, kGeotransform)).transformation;
    const Point place{123.5, -67.25};
    const Point image = OnMap(AxisMapping::kNw, record.transformation.Apply(place));
    const Point mapped = onMaps.Apply(OnMap(AxisMapping::kSe, place));
    EXPECT_NEAR(mapped.first, image.first, 1e-9);
    EXPECT_NEAR(mapped.second, image.second, 1e-9);
    for (const char* text : {"1 2 3 4 5", "1 2 3 4 5 6 7", "1 2 3 4 5 six"})
        EXPECT_EQ(ReadTransformation(text, kWorldFile).problem->kind,
                  ImportProblem::Kind::kSixNumbers);
}

TEST(Points, AreWrittenAsDrawingsAndGdalHaveThem) {
    const Transformation shift{.type = Type::kHelmert, .a = {100, 0, 1}, .b = {-50, -1, 0}};
    std::vector<ControlPoint> points = {{"A", {0, 0}, {1, 2}},
                                        {"B", {1, 1}, {3, 4}},
                                        {"C", {2, 8}, {5.5, 6e-9}},
                                        {"D", {90, 90}, {7, 8}, false}};
    auto record = FittedRecord(points, shift);
    EXPECT_NEAR(record.fit->sigma0.value_or(0.0), std::sqrt(38344.25 / 2), 1e-6);
    record.sourceAxes = AxisMapping::kEs;
    EXPECT_EQ(Text(record, kGdalGcps), "-gcp 0 0 1 2\n-gcp 1 -1 3 4\n-gcp 2 -8 5.5 6e-09\n");
    EXPECT_EQ(Text(record, kCadWorldFile), "refused") << "one side is mirrored";
    record.targetAxes = AxisMapping::kEs;
    EXPECT_EQ(Text(record, kCadWorldFile), "2,-8 108,52\n0,0 100,50\n");
}

TEST(Export, RefusesWhatAFormatCannotHold) {
    const TransformationRecord affine{.transformation = Of(Type::kAffine)};
    const TransformationRecord polynomial{.transformation = Of(Type::kPolynomial2)};
    TransformationRecord similar{.transformation = Of(Type::kHelmert)};
    TransformationRecord infinite = polynomial;
    infinite.transformation.b[2] = std::nan("");
    TransformationRecord unnamed = polynomial;
    unnamed.transformation.type = static_cast<Type>(8);
    TransformationRecord tall = affine;
    tall.transformation.a[0] = tall.transformation.a[1] = 1.7e308;
    const std::tuple<TransformationRecord, TransformationFormat, Refusal> cases[] = {
        {polynomial, kWkt2, Refusal::kNotLinear},
        {polynomial, kWorldFile, Refusal::kNotLinear},
        {polynomial, kGdalGcps, Refusal::kNoPoints},
        {affine, kProjHelmert, Refusal::kNoSimilarity},
        {affine, kCadWorldFile, Refusal::kNoSimilarity},
        {similar, kCadWorldFile, Refusal::kNoPlaces},
        {infinite, kSql, Refusal::kNotFinite},
        {tall, kWorldFile, Refusal::kNotFinite},
        {unnamed, kJson, Refusal::kUnnamedType}};
    for (const auto& [record, format, refusal] : cases) {
        const auto exported = ExportTransformation(record, format);
        ASSERT_TRUE(std::holds_alternative<Refusal>(exported)) << FormatWord(format);
        EXPECT_EQ(std::get<Refusal>(exported), refusal) << FormatWord(format);
    }
    EXPECT_EQ(RefusalText(Refusal::kNotLinear, polynomial.transformation, kWkt2, TextsIn(kEnglish)),
              "WKT 2 operation: this format holds six parameters only; the type is 2. order of "
              "polynomial transformation");
}

}  // namespace
}  // namespace kv_tr::test
