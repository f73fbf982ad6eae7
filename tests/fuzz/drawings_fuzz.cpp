// Drawings: the identity changes no byte, problems name lines that exist.
#include "fuzz/fuzz.h"
#include "kv_tr/interchange/drawing.h"
#include "kv_tr/model/national.h"

namespace kv_tr::test {
namespace {

DrawingReport Transformed(std::string_view bytes, const PointMap& map, DrawingOptions options,
                          std::string& written) {
    const DrawingReport report =
        TransformDrawing(bytes, map, options,
                         {.write = [&](std::string_view part) { written += part; },
                          .goOn = [](auto, auto) { return true; }});
    Require(report.problems.size() <= DrawingReport::kMostProblems, "problems are limited");
    for (const DrawingProblem& problem : report.problems)
        Require(problem.line <= std::max<std::uint64_t>(LineCount(bytes), bytes.size()),
                "the line of a problem exists");
    return report;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const int kind = input.Byte();
    const DrawingOptions options{.keepGoing = kind % 2 == 1};
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    std::string same;
    const DrawingReport identity = Transformed(bytes, Transformation{}, options, same);
    Require(!identity.complete || same == bytes, "the identity changes no byte");

    const Transformation maps[] = {
        {.type = Type::kHelmert, .a = {5, 0.8, -0.6}, .b = {7, 0.6, 0.8}},
        {.type = Type::kAffine, .a = {5, 1.1, -0.2}, .b = {7, 0.3, 0.9}},
        *NationalTransformation(Type::kStgToEov10e),
    };
    std::string moved;
    const auto& map = maps[static_cast<std::size_t>(kind / 2) % 3];
    const DrawingReport report = Transformed(bytes, map, options, moved);
    if (!identity.complete || !report.complete) return 0;  // no two of them read all numbers
    std::string again;
    const DrawingReport back = Transformed(moved, Transformation{}, options, again);
    Require(back.complete, "what is written is a drawing");
    return 0;
}

}  // namespace kv_tr::test
