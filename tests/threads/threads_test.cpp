// Different objects in different threads, at the same time. The preset `threads` runs these tests
// under the thread sanitizer.
#include <gtest/gtest.h>

#include <sstream>
#include <thread>

#include "helpers/environment.h"
#include "helpers/files.h"
#include "helpers/recording_platform.h"
#include "helpers/sample_points.h"
#include "kv_tr/files/control_point_file.h"
#include "kv_tr/files/parameter_listing.h"
#include "kv_tr/fit/fit.h"
#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/clsTr.h"
#include "kv_tr/published/console_platform.h"
#include "kv_tr/published/settings.h"

namespace kv_tr::test {
namespace {

/// What an application does with a transformation of its own; yields all that came out of it.
std::string WorkWith(const std::string& folder) {
    std::ostringstream result;
    for (const enuTR_TYPE type : {TR_HELMERT, TR_AFFIN_5, TR_POLI_3, TR_HELMERT_3}) {
        clsTr transformation;
        const auto engine = transformation.oCalcTr();
        const Subscription events =
            engine->TypeChanched.Subscribe([&](enuTR_TYPE& lower) { result << lower << ' '; });
        engine->AddXY4Tr(ShiftedPairs(40), false);
        engine->eTrType(type);
        engine->DoCalcTr();
        for (int i = 0; i < 35; ++i) engine->ExcludeByIx(i, false);
        engine->bSaveXYs4Tr(folder + "/points.dat");
        engine->bLoadXYsFromFile(folder + "/points.dat", true);
        engine->DoCalcTr();
        engine->SaveLog(folder + "/log.txt");
        transformation.udtTrPrm(engine->udtTrPrm());
        const std::string file = folder + "/parameters";
        transformation.bSaveAffinTrPrm(file);
        transformation.bSavePoliTrPrm(file);
        transformation.bLoadPoliTrPrmFromFile(file);
        std::vector<double> first(1000, 5.0);
        std::vector<double> second(1000, 7.0);
        engine->bTrXYArr(first, second, first, second);
        transformation.sInitDir(folder);
        const PointReading read = ReadControlPointFile(folder + "/points.dat");
        result << ListPolynomial(kv_tr::Fit(read.points, Type::kPolynomial2).transformation,
                                 "core");
        result << engine->sListXYs() << ReadFile(folder + "/log.txt") << ReadFile(file)
               << transformation.sTrTypeName() << first[999] << second[0] << '\n';
        transformation.TearDown();
    }
    return result.str();
}

TEST(Threads, EachWorkWithObjectsOfTheirOwn) {
    const TemporaryFolder folder;
    SetVariable("XDG_CONFIG_HOME", folder.File("settings").c_str());
    const ComponentScope scope(ConsolePlatform(kEnglish));
    DecimalSeparator('.');
    constexpr std::size_t kThreads = 4;
    std::array<std::string, kThreads> folders;
    std::array<std::string, kThreads> results;
    for (std::size_t i = 0; i < kThreads; ++i) {
        folders[i] = folder.File(std::to_string(i));
        std::filesystem::create_directory(folders[i]);
    }
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < kThreads; ++i)
        threads.emplace_back([&, i] { results[i] = WorkWith(folders[i]); });
    for (std::thread& thread : threads) thread.join();
    EXPECT_GT(results[0].size(), 30000U);
    for (const std::string& result : results) EXPECT_EQ(result, results[0]);
    EXPECT_EQ(clsDebug().colTraceObj().size(), 0U);
    UnsetVariable("XDG_CONFIG_HOME");
}

}  // namespace
}  // namespace kv_tr::test
