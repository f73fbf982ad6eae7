// Adjustments with published figures, or figures in 50 digits.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "kv_tr/files/control_point_file.h"
#include "kv_tr/model/type.h"

namespace kv_tr::test {

using Json = nlohmann::json;

inline Type TypeNamed(const std::string& name) {
    static const std::map<std::string, Type> kTypes{
        {"helmert3", Type::kHelmert3}, {"helmert", Type::kHelmert},   {"affine5", Type::kAffine5},
        {"affine", Type::kAffine},     {"bilinear", Type::kBilinear}, {"poly1", Type::kPolynomial1},
        {"poly2", Type::kPolynomial2}, {"poly3", Type::kPolynomial3}, {"poly4", Type::kPolynomial4},
        {"poly5", Type::kPolynomial5}};
    return kTypes.at(name);
}

struct ReferenceCase {
    Json json;
    Type type;
    std::vector<ControlPoint> points;

    explicit ReferenceCase(const std::string& name) {
        const std::string path = TEST_DATA "/adjustment/" + name;
        std::ifstream(path + ".json") >> json;
        type = TypeNamed(json["type"]);
        std::ifstream file(path + ".dat");
        points = ReadControlPoints(file).points;
        for (const Json& id : json.value("excluded_ids", Json::array())) {
            std::ranges::find(points, id.get<std::string>(), &ControlPoint::id)->used = false;
        }
    }

    const Json& Reference() const { return json["reference"]; }
    std::vector<Point> Sigmas() const {
        std::vector<Point> sigmas;
        for (const double sigma : json.value("sigma_per_point", std::vector<double>())) {
            sigmas.push_back({sigma, sigma});
        }
        return sigmas;
    }
};

/// The names of all cases that have such an entry.
inline std::vector<std::string> CasesWith(const std::string& key) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(TEST_DATA "/adjustment")) {
        if (entry.path().extension() != ".json") continue;
        Json json;
        std::ifstream(entry.path()) >> json;
        if (json.contains(key)) names.push_back(entry.path().stem().string());
    }
    std::ranges::sort(names);
    return names;
}

}  // namespace kv_tr::test
