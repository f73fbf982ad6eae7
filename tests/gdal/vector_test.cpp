// Layers transformed whole, written and read again through GDAL.
#include <gdal_priv.h>
#include <gtest/gtest.h>
#include <ogrsf_frmts.h>
#include <sys/resource.h>

#include <bit>
#include <cmath>
#include <csignal>
#include <functional>
#include <map>
#include <numbers>
#include <set>

#include "helpers/files.h"
#include "kv_tr/fit/adjusted_model.h"
#include "kv_tr/gdal/gdal_errors.h"
#include "kv_tr/gdal/vector_transform.h"

namespace kv_tr::gdal {
namespace {

namespace fs = std::filesystem;

const std::string kParcels = EXAMPLES "/parcels.gpkg";

Transformation Similarity() {
    return {.type = Type::kHelmert, .a = {-123.456, 1.2, 0.7}, .b = {7.1, -0.7, 1.2}};
}
Transformation Stretch() { return {.type = Type::kAffine, .a = {10, 1, 0.1}, .b = {20, 0.3, 2}}; }

using Set = std::unique_ptr<GDALDataset>;

Set Open(const std::string& name) {
    RegisterDrivers();
    return Set(GDALDataset::Open(name.c_str(), GDAL_OF_VECTOR | GDAL_OF_VERBOSE_ERROR));
}

std::string TextOf(const OGRGeometry* geometry) {
    if (geometry == nullptr) return "none";
    OGRWktOptions options;
    options.variant = wkbVariantIso;
    options.format = OGRWktFormat::G;
    options.precision = 17;
    return geometry->exportToWkt(options);
}

/// Whether a layer states a system; GeoPackages have one for undefined places.
bool HasSystem(OGRLayer& layer) {
    const auto* system = layer.GetSpatialRef();
    return system != nullptr && std::string(system->GetName()) != "Undefined Cartesian SRS";
}

/// All that a data set holds but for x and y, which become 0.
std::string ContentOf(const std::string& name) {
    std::string text;
    const Set set = Open(name);
    if (!set) return "cannot be opened";
    for (char** item = set->GetMetadata(); item != nullptr && *item != nullptr; ++item)
        text += std::string(*item) + "\n";
    for (const auto& domain : set->GetFieldDomainNames()) text += "domain " + domain + "\n";
    for (auto* layer : set->GetLayers()) {
        const OGRFeatureDefn& form = *layer->GetLayerDefn();
        text += std::string(layer->GetName()) + " " + layer->GetFIDColumn() + " " +
                layer->GetGeometryColumn() + " " + OGRGeometryTypeToName(layer->GetGeomType()) +
                (HasSystem(*layer) ? " system" : "") + "\n";
        for (char** item = layer->GetMetadata(); item != nullptr && *item != nullptr; ++item)
            text += std::string(*item) + "\n";
        for (int i = 0; i < form.GetFieldCount(); ++i) {
            const auto& field = *form.GetFieldDefn(i);
            text += std::string(field.GetNameRef()) + " " +
                    OGRFieldDefn::GetFieldTypeName(field.GetType()) + " " +
                    std::to_string(field.GetWidth()) + " " + field.GetDomainName() + "\n";
        }
        for (auto& feature : layer) {
            text += std::to_string(feature->GetFID());
            for (int i = 0; i < form.GetFieldCount(); ++i)
                text += std::string("|") + feature->GetFieldAsString(i);
            for (int i = 0; i < feature->GetGeomFieldCount(); ++i) {
                OGRGeometry* geometry = feature->GetGeomFieldRef(i);
                struct : OGRDefaultGeometryVisitor {
                    using OGRDefaultGeometryVisitor::visit;
                    void visit(OGRPoint* point) override { point->setX(0), point->setY(0); }
                } toZero;
                if (geometry != nullptr) geometry->accept(&toZero);
                text += "|" + TextOf(geometry);
            }
            text += "\n";
        }
    }
    return text;
}

/// The points of all features of a layer, in their order.
std::vector<OGRPoint> PointsOf(const std::string& name, int layer = 0) {
    struct Visitor : OGRDefaultGeometryVisitor {
        using OGRDefaultGeometryVisitor::visit;
        void visit(OGRPoint* point) override { points.push_back(*point); }
        std::vector<OGRPoint> points;
    } visitor;
    const Set set = Open(name);
    if (!set) return {};
    for (auto& feature : set->GetLayer(layer)) {
        if (auto* geometry = feature->GetGeometryRef()) geometry->accept(&visitor);
    }
    return visitor.points;
}

std::set<std::string> Names(const std::string& folder) {
    std::set<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        names.insert(entry.path().lexically_relative(folder).string());
    return names;
}

/// A data set of one layer with features of this text and a number and a name each.
void Make(const std::string& name, const char* driver, const std::vector<std::string>& texts,
          const char* system = nullptr) {
    RegisterDrivers();
    OGRSpatialReference crs;
    if (system != nullptr) crs.SetFromUserInput(system);
    Set set(GetGDALDriverManager()->GetDriverByName(driver)->Create(name.c_str(), 0, 0, 0,
                                                                    GDT_Unknown, nullptr));
    auto* layer = set->CreateLayer("made", system != nullptr ? &crs : nullptr, wkbUnknown);
    OGRFieldDefn number("number", OFTReal);
    OGRFieldDefn label("label", OFTString);
    layer->CreateField(&number);
    layer->CreateField(&label);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        OGRFeature feature(layer->GetLayerDefn());
        feature.SetField("number", 0.1 * static_cast<double>(i + 1));
        feature.SetField("label", ("árvíztűrő " + std::to_string(i)).c_str());
        OGRGeometry* geometry = nullptr;
        OGRGeometryFactory::createFromWkt(texts[i].c_str(), nullptr, &geometry);
        feature.SetGeometryDirectly(geometry);
        ASSERT_EQ(layer->CreateFeature(&feature), OGRERR_NONE);
    }
}

/// What an attempt is refused with; kError's id does not occur.
Text Refusal(const std::function<void()>& attempt) {
    try {
        attempt();
    } catch (const DataSetError& error) {
        return error.Id();
    } catch (const Cancelled&) {
        return Text::kNothingTransformed;
    }
    return Text::kError;
}

bool Has(const VectorResult& result, Text remark) {
    return std::ranges::any_of(result.remarks, [&](const auto& one) { return one.Id() == remark; });
}

class Layers : public testing::Test {
protected:
    const test::TemporaryFolder folder;
    std::string File(const std::string& name) const { return folder.File(name); }
    void SetUp() override { fs::create_directories(File("")); }
};

TEST_F(Layers, KeepsAllButTheCoordinatesAndGivesThoseTheBitsOfTheTransformation) {
    const auto result =
        TransformLayers({.source = kParcels, .target = File("o.gpkg")}, {Similarity()});
    EXPECT_EQ(result.layers, 3U);
    EXPECT_EQ(result.features, 8U);
    EXPECT_EQ(result.arcs, 0U);
    EXPECT_TRUE(result.remarks.empty()) << result.remarks.front().what();
    EXPECT_EQ(ContentOf(File("o.gpkg")), ContentOf(kParcels));
    for (const int layer : {0, 1}) {
        const auto before = PointsOf(kParcels, layer);
        const auto after = PointsOf(File("o.gpkg"), layer);
        ASSERT_EQ(before.size(), after.size());
        ASSERT_FALSE(before.empty());
        for (std::size_t i = 0; i < before.size(); ++i) {
            const Point image = Similarity().Apply({before[i].getX(), before[i].getY()});
            EXPECT_EQ(after[i].getX(), image.first);
            EXPECT_EQ(after[i].getY(), image.second);
            EXPECT_EQ(after[i].getZ(), before[i].getZ());
            EXPECT_EQ(after[i].getM(), before[i].getM());
        }
    }
    EXPECT_EQ(Names(File("")), std::set<std::string>{"o.gpkg"});
}

TEST_F(Layers, MakesLinesOfArcsWithinTheToleranceWhereCirclesBend) {
    const double tolerance = 0.01;
    const auto result = TransformLayers(
        {.source = kParcels, .target = File("o.gpkg"), .curveTolerance = tolerance}, {Stretch()});
    EXPECT_EQ(result.arcs, 1U);
    const Set set = Open(File("o.gpkg"));
    EXPECT_EQ(set->GetLayer(1)->GetGeomType(), wkbLineStringZM);
    const std::unique_ptr<OGRFeature> kerb(set->GetLayer(1)->GetNextFeature());
    const auto& line = *kerb->GetGeometryRef()->toLineString();
    const auto back = *Stretch().Inverse();
    const auto sourceOf = [&](int i) { return back.Apply({line.getX(i), line.getY(i)}); };
    // The circle through (0, 0), (50, -20), (100, 0) from (594000, 254500).
    const double radius = 72.5;
    const Point centre{594050, 254552.5};
    const auto besides = [&](Point p) {
        return std::abs(std::hypot(p.first - centre.first, p.second - centre.second) - radius);
    };
    const int ends = line.getNumPoints() - 2;
    ASSERT_GT(ends, 10);
    std::set<double> heights;
    double greatest = 0;
    for (int i = 0; i < ends; ++i) {
        const Point from = sourceOf(i);
        const Point to = sourceOf(i + 1);
        const Point middle{(from.first + to.first) / 2, (from.second + to.second) / 2};
        greatest = std::max({greatest, besides(from), besides(middle)});
        heights.insert(line.getZ(i));
        EXPECT_NEAR(line.getM(i), 110 * (line.getZ(i) - 410.5), 1e-6);  // 55 for each 0.5
    }
    EXPECT_LE(greatest, tolerance);
    EXPECT_GT(greatest, tolerance / 4);  // not wastefully
    EXPECT_EQ(heights.size(), static_cast<std::size_t>(ends));
    EXPECT_TRUE(heights.contains(411));  // the point in the middle is there
    EXPECT_EQ(line.getZ(line.getNumPoints() - 1), 412);
}

TEST_F(Layers, EveryFormatGivesTheSameNumbersBack) {
    const std::vector<std::string> texts{"POINT (650000.1 240000.3)",
                                         "POINT (0.30000000000000004 123456789.12345679)",
                                         "POINT (-1e-7 3.3333333333333335)"};
    Make(File("in.gpkg"), "GPKG", texts);
    const auto before = PointsOf(File("in.gpkg"));
    for (const std::string name : {"o.gpkg", "o.shp", "o.geojson", "o.fgb", "o.csv", "o.sqlite"}) {
        SCOPED_TRACE(name);
        TransformLayers({.source = File("in.gpkg"), .target = File(name)}, {Similarity()});
        const auto after = PointsOf(File(name));
        ASSERT_EQ(after.size(), before.size());
        std::multiset<std::pair<double, double>> wanted;
        std::multiset<std::pair<double, double>> found;
        for (std::size_t i = 0; i < before.size(); ++i) {
            const Point image = Similarity().Apply({before[i].getX(), before[i].getY()});
            wanted.insert({image.first, image.second});
            found.insert({after[i].getX(), after[i].getY()});
        }
        EXPECT_EQ(found, wanted);
        std::multiset<std::string> labels;
        double sum = 0;
        const Set set = Open(File(name));
        for (auto& feature : set->GetLayer(0)) {
            labels.insert(feature->GetFieldAsString("label"));
            sum += feature->GetFieldAsDouble("number");
        }
        EXPECT_NEAR(sum, 0.6, 1e-12);
        EXPECT_EQ(labels,
                  (std::multiset<std::string>{"árvíztűrő 0", "árvíztűrő 1", "árvíztűrő 2"}));
    }
}

TEST_F(Layers, TellsWhatAFormatCannotHoldAndKeepsItAnotherWayWhereThereIsOne) {
    {
        RegisterDrivers();
        Set set(GetGDALDriverManager()->GetDriverByName("DXF")->Create(File("in.dxf").c_str(), 0, 0,
                                                                       0, GDT_Unknown, nullptr));
        auto* layer = set->CreateLayer("entities");
        OGRFeature feature(layer->GetLayerDefn());
        feature.SetStyleString("PEN(c:#ff0000)");
        OGRLineString line;
        line.addPoint(1, 2);
        line.addPoint(3, 4);
        feature.SetGeometry(&line);
        ASSERT_EQ(layer->CreateFeature(&feature), OGRERR_NONE);
    }
    auto result =
        TransformLayers({.source = File("in.dxf"), .target = File("o.gpkg")}, {Similarity()});
    EXPECT_TRUE(Has(result, Text::kStylesBecomeField));
    EXPECT_NE(ContentOf(File("o.gpkg")).find("|PEN(c:#ff0000)"), std::string::npos);

    {
        Set set(GetGDALDriverManager()->GetDriverByName("GPKG")->Create(
            File("times.gpkg").c_str(), 0, 0, 0, GDT_Unknown, nullptr));
        auto* layer = set->CreateLayer("times", nullptr, wkbPoint);
        OGRFieldDefn field("a_long_name_of_a_field", OFTDateTime);
        layer->CreateField(&field);
        OGRFeature feature(layer->GetLayerDefn());
        feature.SetField(0, 2024, 5, 6, 7, 8, 9.0F, 100);
        OGRPoint point(1, 2);
        feature.SetGeometry(&point);
        ASSERT_EQ(layer->CreateFeature(&feature), OGRERR_NONE);
    }
    result =
        TransformLayers({.source = File("times.gpkg"), .target = File("o.shp")}, {Similarity()});
    EXPECT_TRUE(Has(result, Text::kFieldBecomes));
    EXPECT_TRUE(Has(result, Text::kIdentifiersAnew));
    EXPECT_NE(ContentOf(File("o.shp")).find("2024/05/06 07:08:09"), std::string::npos);
    result =
        TransformLayers({.source = File("times.gpkg"), .target = File("o.dxf")}, {Similarity()});
    EXPECT_TRUE(Has(result, Text::kFieldLeftOut));
}

TEST_F(Layers, TransformsEveryGeometryOfAFeatureAndTellsWhatStaysBehind) {
    test::WriteFile(File("two.csv"), "id,one,other\n1,POINT (10 20),\"LINESTRING (5 0,0 10)\"\n");
    test::WriteFile(File("two.vrt"),
                    "<OGRVRTDataSource><OGRVRTLayer name='two'><SrcDataSource relativeToVRT='1'>"
                    "two.csv</SrcDataSource><GeometryField name='g' encoding='WKT' field='one'/>"
                    "<GeometryField name='h' encoding='WKT' field='other'/></OGRVRTLayer>"
                    "</OGRVRTDataSource>");
    TransformLayers({.source = File("two.vrt"), .target = File("two.sqlite")}, {Stretch()});
    const Set two = Open(File("two.sqlite"));
    const auto feature = OGRFeatureUniquePtr(two->GetLayer(0)->GetNextFeature());
    EXPECT_EQ(TextOf(feature->GetGeomFieldRef(0)), "POINT (22.0 63.0)");
    EXPECT_EQ(TextOf(feature->GetGeomFieldRef(1)), "LINESTRING (15.0 21.5,11.0 40.0)");
    EXPECT_TRUE(
        Has(TransformLayers({.source = File("two.vrt"), .target = File("o.gpkg")}, {Stretch()}),
            Text::kGeometryFieldsLeftOut));

    Make(File("mixed.gpkg"), "GPKG", {"POINT (1 2)"});
    auto& drivers = *GetGDALDriverManager();
    const Set scan(drivers.GetDriverByName("MEM")->Create("", 300, 300, 1, GDT_Byte, nullptr));
    double place[] = {0, 1, 0, 0, 0, -1};
    scan->SetGeoTransform(place);
    CPLStringList options;
    options.AddString("APPEND_SUBDATASET=YES");
    options.AddString("RASTER_TABLE=scan");
    ASSERT_TRUE(Set(drivers.GetDriverByName("GPKG")->CreateCopy(
        File("mixed.gpkg").c_str(), scan.get(), 0, options.List(), nullptr, nullptr)));
    EXPECT_TRUE(
        Has(TransformLayers({.source = File("mixed.gpkg"), .target = File("m.gpkg")}, {Stretch()}),
            Text::kPagesLeftOut));
}

TEST_F(Layers, StatesTheSystemThatIsAskedForAndNoOther) {
    Make(File("in.gpkg"), "GPKG", {"POINT (650000 240000)"}, "EPSG:23700");
    auto result =
        TransformLayers({.source = File("in.gpkg"), .target = File("o.gpkg")}, {Transformation{}});
    EXPECT_TRUE(Has(result, Text::kCrsDropped));
    EXPECT_EQ(ContentOf(File("o.gpkg")).find(" system"), std::string::npos);
    // Northing comes first in this system, but never in a map.
    test::WriteFile(File("crs.txt"), " EPSG:31466\n");
    for (const std::string& crs : {std::string("EPSG:31466"), File("crs.txt")}) {
        result = TransformLayers({.source = File("in.gpkg"),
                                  .target = File("p.gpkg"),
                                  .replaces = true,
                                  .crs = ReadTargetCrs(crs)},
                                 {Transformation{}});
        EXPECT_FALSE(Has(result, Text::kCrsDropped));
        const Set set = Open(File("p.gpkg"));
        EXPECT_STREQ(set->GetLayer(0)->GetSpatialRef()->GetAuthorityCode(nullptr), "31466");
        EXPECT_EQ(PointsOf(File("p.gpkg")).front().getX(), 650000);
    }
    EXPECT_FALSE(ReadTargetCrs("none").IsStated());
    EXPECT_EQ(Refusal([] { ReadTargetCrs("EPSG:0"); }), Text::kUnknownCrs);
    EXPECT_TRUE(Has(TransformLayers({.source = File("in.gpkg"), .target = File("o.geojson")},
                                    {Transformation{}}),
                    Text::kDegreesExpected));
}

TEST_F(Layers, TakesTheAxesOfBothSystemsAsTold) {
    Make(File("in.gpkg"), "GPKG", {"POINT (1 20)"});
    const Transformation shift{.type = Type::kHelmert, .a = {100, 1, 0}, .b = {3000, 0, 1}};
    for (const auto& [source, target, x, y] :
         {std::tuple{AxisMapping::kEn, AxisMapping::kEn, 101.0, 3020.0},
          {AxisMapping::kNe, AxisMapping::kEn, 120.0, 3001.0},
          {AxisMapping::kEn, AxisMapping::kNe, 3020.0, 101.0},
          {AxisMapping::kSw, AxisMapping::kNw, -2999.0, 80.0},
          {AxisMapping::kEs, AxisMapping::kSe, 2980.0, -101.0}}) {
        TransformLayers({.source = File("in.gpkg"), .target = File("o.gpkg"), .replaces = true},
                        {shift, source, target});
        const auto point = PointsOf(File("o.gpkg")).front();
        EXPECT_EQ(point.getX(), x);
        EXPECT_EQ(point.getY(), y);
    }
}

TEST_F(Layers, NamesTheFeatureWithoutAnImageOrLeavesItOut) {
    Make(File("in.gpkg"), "GPKG",
         {"POINT (0 0)", "LINESTRING (0 0, 1e200 0)", "POINT EMPTY", "MULTIPOINT (1 1, 2 2)"});
    Transformation square{.type = Type::kPolynomial2};
    square.a = {0, 0, 1, 0, 1e-3};
    square.b = {0, 0, 0, 1};
    VectorRequest request{.source = File("in.gpkg"), .target = File("o.gpkg")};
    try {
        TransformLayers(request, {square});
        FAIL();
    } catch (const DataSetError& error) {
        EXPECT_NE(std::string(error.what()).find("layer made, feature 2"), std::string::npos)
            << error.what();
        EXPECT_NE(std::string(error.what()).find("not finite"), std::string::npos);
    }
    EXPECT_EQ(Names(File("")), std::set<std::string>{"in.gpkg"});
    request.keepGoing = true;
    const auto result = TransformLayers(request, {square});
    EXPECT_EQ(result.features, 4U);
    EXPECT_EQ(result.leftOut, 1U);
    EXPECT_EQ(PointsOf(File("o.gpkg")).size(), 4U);  // the empty one is a point without numbers
}

TEST_F(Layers, CountsThePointsOutsideTheControlPoints) {
    std::vector<ControlPoint> control;
    for (const auto& [x, y] : {std::pair{0.0, 0.0}, {10.0, 0.0}, {0.0, 10.0}, {10.0, 10.0}})
        control.push_back({.id = "p", .source = {x, y}, .destination = {x, y + 0.001 * x * y}});
    const PointPrecision precision(AdjustedModel(control, Type::kHelmert));
    Make(File("in.gpkg"), "GPKG", {"POINT (5 5)", "LINESTRING (1 1, 20 5)", "POINT (5 -3)"});
    const auto outside =
        TransformLayers(
            {.source = File("in.gpkg"), .target = File("o.gpkg"), .precision = &precision},
            {Transformation{}})
            .outside;
    EXPECT_EQ(outside.count, 2U);
    EXPECT_EQ(outside.farthest, 10);
    EXPECT_TRUE(outside.isFar);
}

TEST_F(Layers, ReplacesADataSetWholeOrNotAtAll) {
    Make(File("in.gpkg"), "GPKG", {"POINT (1 2)"});
    test::WriteFile(File("o.txt"), "old");
    Make(File("o.shp"), "ESRI Shapefile", {"POINT (1 2)"}, "EPSG:23700");
    ASSERT_TRUE(fs::exists(File("o.prj")));
    VectorRequest request{.source = File("in.gpkg"), .target = File("o.shp")};
    const auto before = Names(File(""));
    const std::string old = test::ReadFile(File("o.shp"));
    EXPECT_EQ(Refusal([&] { TransformLayers(request, {Similarity()}); }), Text::kTargetExists);
    EXPECT_EQ(test::ReadFile(File("o.shp")), old);
    EXPECT_EQ(Names(File("")), before);
    request.replaces = true;
    TransformLayers(request, {Similarity()});
    EXPECT_NE(test::ReadFile(File("o.shp")), old);
    EXPECT_FALSE(fs::exists(File("o.prj")));  // would state the system of the older one
    EXPECT_EQ(test::ReadFile(File("o.txt")), "old");

    fs::create_symlink("later.gpkg", File("link.gpkg"));
    TransformLayers({.source = File("in.gpkg"), .target = File("link.gpkg")}, {Similarity()});
    EXPECT_TRUE(fs::is_symlink(File("link.gpkg")));
    EXPECT_EQ(PointsOf(File("later.gpkg")).size(), 1U);

    fs::remove(File("o.shp"));  // only a member is in the way
    request.replaces = false;
    EXPECT_EQ(Refusal([&] { TransformLayers(request, {Similarity()}); }), Text::kTargetExists);
    EXPECT_FALSE(fs::exists(File("o.shp")));
}

TEST_F(Layers, GivesLayersThatNeedFilesOfTheirOwnAFolder) {
    VectorRequest request{.source = kParcels, .target = File("o.shp")};
    EXPECT_EQ(Refusal([&] { TransformLayers(request, {Similarity()}); }), Text::kOneLayerOnly);
    request.mayBeFolder = true;
    const auto result = TransformLayers(request, {Similarity()});
    EXPECT_EQ(result.target, fs::path(File("o")));
    const auto names = Names(File(""));
    for (const char* name : {"o/parcels.shp", "o/parcels.dbf", "o/edges.shp", "o/owners.dbf"})
        EXPECT_TRUE(names.contains(name)) << name;
    EXPECT_EQ(PointsOf(File("o/parcels.shp")).size(), PointsOf(kParcels).size());
}

TEST_F(Layers, RefusesWhatItCannotDoAndLeavesNothingBehind) {
    test::WriteFile(File("text"), "no layers");
    test::WriteFile(File("t.csv"), "a,b\n1,2\n");
    fs::copy_file(kParcels, File("in.gpkg"));
    fs::create_hard_link(File("in.gpkg"), File("link.gpkg"));
    const auto before = Names(File(""));
    const auto refusal = [&](const std::string& source, const std::string& target,
                             const std::string& format = {}) {
        return Refusal([&] {
            TransformLayers({.source = File(source),
                             .target = File(target),
                             .format = format,
                             .replaces = true},
                            {Similarity()});
        });
    };
    EXPECT_EQ(refusal("gone.gpkg", "o.gpkg"), Text::kNotADataSet);
    EXPECT_EQ(refusal("text", "o.gpkg"), Text::kNotADataSet);
    EXPECT_EQ(refusal("t.csv", "o.gpkg"), Text::kNoGeometries);
    EXPECT_EQ(refusal("in.gpkg", "o.xyz"), Text::kFormatUnclear);
    EXPECT_EQ(refusal("in.gpkg", "o.gpkg", "JPEG"), Text::kFormatNotWritten);
    EXPECT_EQ(refusal("in.gpkg", "in.gpkg"), Text::kInputIsOutput);
    EXPECT_EQ(refusal("in.gpkg", "link.gpkg"), Text::kInputIsOutput);
    EXPECT_EQ(refusal("in.gpkg", "text/o.gpkg"), Text::kTargetNotWritable);
    EXPECT_EQ(Refusal([&] {
                  TransformLayers({.source = File("in.gpkg"), .target = File("new/sub/o.gpkg")},
                                  {Similarity()}, [](double) { return false; });
              }),
              Text::kNothingTransformed);
    EXPECT_EQ(Names(File("")), before);
}

TEST_F(Layers, NoticesADiskThatTakesNoMore) {
    std::vector<std::string> texts;
    for (int i = 0; i < 3000; ++i) texts.push_back("POINT (" + std::to_string(i) + " 0.123456789)");
    Make(File("in.gpkg"), "GPKG", texts);
    const auto before = Names(File(""));
    rlimit usual{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &usual), 0);
    const rlimit small{50000, usual.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    for (const char* name :
         {"o.gpkg", "o.shp", "o.geojson", "o.fgb", "o.csv", "o.gml", "o.dxf", "o.mif"}) {
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
        const Text refusal = Refusal([&] {
            TransformLayers({.source = File("in.gpkg"), .target = File(name)}, {Similarity()});
        });
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &usual), 0);
        EXPECT_TRUE(refusal == Text::kTargetNotWritable || refusal == Text::kFeatureNotWritten)
            << name << static_cast<int>(refusal);
        EXPECT_EQ(Names(File("")), before) << name;
    }
    std::signal(SIGXFSZ, handler);
}

}  // namespace
}  // namespace kv_tr::gdal
