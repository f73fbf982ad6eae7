// The published classes in any order of calls: counts agree, only RuntimeError leaves.
#include <memory>

#include "fuzz/fuzz.h"
#include "helpers/recording_platform.h"
#include "kv_tr/forms/graph_page.h"
#include "kv_tr/published/clsTr.h"
#include "kv_tr/published/clsTrCalc.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/text/code_page.h"

namespace kv_tr::test {
namespace {

std::vector<typeXYs4Tr> AnyPairs(Input& input) {
    std::vector<typeXYs4Tr> pairs;
    for (const ControlPoint& point : input.Points(24)) {
        pairs.push_back({point.id, point.source.first, point.source.second, point.destination.first,
                         point.destination.second});
        pairs.back().bNotUsed = !point.used;
    }
    return pairs;
}

void CheckCounts(const clsTrCalc& engine) {
    std::vector<typeXYs4Tr> pairs;
    try {
        pairs = engine.Pairs();
    } catch (const RuntimeError&) {  // they were let go
        return;
    }
    const auto excluded =
        std::ranges::count_if(pairs, [](const typeXYs4Tr& pair) { return bool(pair.bNotUsed); });
    Require(static_cast<std::ptrdiff_t>(pairs.size()) == engine.lFullCnt() &&
                excluded == engine.lNotUsedCnt(),
            "pairs are counted");
}

void Step(clsTrCalc& engine, Input& input) {
    switch (input.Below(13)) {
        case 0: engine.AddXY4Tr(AnyPairs(input), input.Flag()); break;
        case 1: engine.eTrType(static_cast<enuTR_TYPE>(input.Below(40) - 5)); break;
        case 2: engine.DoCalcTr(); break;
        case 3: engine.ExcludeByIx(static_cast<std::int8_t>(input.Byte()), input.Flag()); break;
        case 4: engine.SwapSourDest(); break;
        case 5: engine.ResetAllNotUsed(); break;
        case 6: {
            std::vector<typeXYs4Tr> pairs;
            std::int32_t count = 0;
            engine.GetXYs(pairs, count, input.Flag());
            Require(count == 0 || count == static_cast<std::int32_t>(pairs.size()), "as counted");
            break;
        }
        case 7: Require(IsUtf8(engine.sListXYs()), "a listing is valid"); break;
        case 8:
            Require(IsUtf8(SvgOf(PageOf(engine.Held(), 0.2, {true, true, true, true}, 900, 700))),
                    "a picture is valid");
            break;
        case 9: engine.DoCalc_Helmert3(static_cast<std::int16_t>(input.Byte())); break;
        case 10: engine.DoCalc_Affin5(static_cast<std::int16_t>(input.Byte())); break;
        case 11: {
            std::vector<double> first(input.Byte() % 20U, input.Coordinate());
            std::vector<double> second(input.Byte() % 20U, input.Coordinate());
            const bool equal = first.size() == second.size();
            Require(engine.bTrXYArr(first, second, first, second) == equal, "lengths must agree");
            break;
        }
        case 12:
            if (input.Byte() % 16 == 0) engine.TearDown();
            break;
    }
    if (engine.lFullCnt() > 500) engine.AddXY4Tr({}, false);
}

/// A record through the six parameters and its listings.
void UseRecord(clsTr& transformation, const TR_PRM& record, Input& input) {
    transformation.udtTrPrm(record);
    double first = input.Coordinate();
    double second = input.Coordinate();
    transformation.TrXY(first, second, first, second);
    double angle = input.Coordinate();
    transformation.TrAngle(angle, angle, first, second, input.Coordinate());
    (void)(transformation.sListHelmertTrPrm() + transformation.sListPoliTrPrm());
    AFFIN_PRM inverse;
    transformation.bGetInversePrm(inverse);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static RecordingPlatform platform;
    Input input(data, size);
    {
        clsTr transformation;
        const auto engine = transformation.oCalcTr();
        for (int step = 0; step < 30 && !input.Empty(); ++step) {
            try {
                Step(*engine, input);
                if (input.Byte() < 8) UseRecord(transformation, engine->udtTrPrm(), input);
            } catch (const RuntimeError&) {  // what a host has to expect
            }
            CheckCounts(*engine);
        }
        transformation.TearDown();
    }
    platform.messages.clear();
    return 0;
}

}  // namespace kv_tr::test
