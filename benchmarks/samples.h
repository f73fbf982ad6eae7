// What the benchmarks work on, and which there are.
#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/pairs.h"

namespace kv_tr::benchmarks {

/// Coordinates spread over 100 km, by the millimetre.
inline double Coordinate(std::size_t i, std::size_t prime, double origin) {
    return origin + static_cast<double>(i * prime % 100000007) / 1000.0;
}
inline PlanePoint Point(std::size_t i) {
    return {Coordinate(i, 7919 * 7919, 600000.0), Coordinate(i, 104729 * 31, 200000.0)};
}

/// A record close to the identity, so that points mapped again and again stay where they are.
inline TR_PRM AlmostIdentity(enuTR_TYPE type) {
    Coefficients c;
    if (type < TR_POLI_1) {
        c.a[1] = c.b[2] = 1.0;
        c.a[2] = c.b[1] = 1e-9;
        return MakeRecord(type, c);
    }
    c.a[0] = c.a[1] = 650000.0;
    c.b[0] = c.b[1] = 250000.0;
    for (std::size_t k = 4; k < c.a.size(); ++k) c.a[k] = c.b[k] = 1e-32;
    c.a[2] = c.b[3] = 1.0;
    return MakeRecord(type, c);
}

/// Pairs whose destination is the source, but for some decimetres.
inline std::vector<typeXYs4Tr> Pairs(std::size_t count) {
    std::vector<typeXYs4Tr> pairs(count);
    for (std::size_t i = 0; i < count; ++i) {
        const PlanePoint source = Point(i);
        pairs[i].sId = "P" + std::to_string(i);
        pairs[i].dXsour = source.first;
        pairs[i].dYsour = source.second;
        pairs[i].dXdest = source.first + 0.3 * std::sin(source.second / 20000.0);
        pairs[i].dYdest = source.second + 0.3 * std::cos(source.first / 20000.0);
    }
    return pairs;
}

/// The same as control points of the core.
inline std::vector<ControlPoint> Points(std::size_t count) {
    std::vector<ControlPoint> points;
    for (const typeXYs4Tr& pair : Pairs(count)) points.push_back(ControlPointOf(pair));
    return points;
}

/// The parameters of PROJ's affine or, for polynomials, horner operation that is a record.
std::string ProjText(const TR_PRM& record);

// Each adds the benchmarks of a file.
void RegisterEvaluation();
void RegisterFits();
void RegisterText();
void RegisterRasters();  // where there is GDAL, with its programs
void RegisterLayers();
void RegisterWorkbench();
void RegisterPlan();  // where the windows are built

}  // namespace kv_tr::benchmarks
