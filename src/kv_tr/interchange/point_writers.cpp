// Control points written in the formats of other programs.
#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "kv_tr/interchange/point_formats.h"
#include "kv_tr/text/control_characters.h"

namespace kv_tr {
namespace {

/// A point with what belongs to it.
struct Item {
    const ControlPoint* point;
    const Residual* residual;  // or null
    const Point* sigma;        // or null
};

std::string Joined(std::initializer_list<double> numbers, const char* separator) {
    std::string text;
    for (const double number : numbers)
        text += (text.empty() ? "" : separator) + ShortestText(number);
    return text;
}

std::string CsvField(const std::string& text) {
    const bool plain = text.find_first_of(",\"\r\n") == std::string::npos &&
                       !text.starts_with('#') && !text.starts_with(' ') && !text.ends_with(' ');
    if (plain) return text;
    std::string quoted = "\"";
    for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
    return quoted + '"';
}

std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
            case '<': escaped += "&lt;"; break;
            case '>': escaped += "&gt;"; break;
            case '&': escaped += "&amp;"; break;
            case '"': escaped += "&quot;"; break;
            default: escaped += c;
        }
    }
    return escaped;
}

std::string JsonString(const std::string& text) {
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string Listing(const std::vector<Item>& items) {
    std::string text;
    for (const auto& [point, residual, sigma] : items) {
        text += PadLeft(IdentifierField(point->id), 20);
        for (const double number : {point->source.first, point->source.second,
                                    point->destination.first, point->destination.second}) {
            text += ' ' + PadLeft(ShortestText(number), 14);
        }
        if (sigma != nullptr) text += ' ' + Joined({sigma->first, sigma->second}, " ");
        text += "\r\n";
    }
    return text;
}

std::string Csv(const std::vector<Item>& items, bool residuals, bool sigmas) {
    std::string text = "id,src_first,src_second,dst_first,dst_second,use";
    if (residuals) text += ",res_first,res_second,res_total";
    if (sigmas) text += ",sigma_first,sigma_second";
    text += "\r\n";
    for (const auto& [point, residual, sigma] : items) {
        const auto& [id, from, to, used] = *point;
        text += CsvField(id) + ',' + Joined({from.first, from.second, to.first, to.second}, ",") +
                (used ? ",1" : ",0");
        if (residual != nullptr)
            text += ',' + Joined({residual->first, residual->second, residual->Length()}, ",");
        if (sigma != nullptr) text += ',' + Joined({sigma->first, sigma->second}, ",");
        text += "\r\n";
    }
    return text;
}

std::string Qgis(const std::vector<Item>& items, const std::string& crs) {
    std::string text = crs.empty() ? "" : "#CRS: " + WithoutControls(crs) + "\n";
    text += "mapX,mapY,sourceX,sourceY,enable,dX,dY,residual\n";
    for (const auto& [point, residual, sigma] : items) {
        const auto& [id, from, to, used] = *point;
        text += Joined({to.first, to.second, from.first, from.second}, ",") +
                (used ? ",1,0,0,0\n" : ",0,0,0,0\n");
    }
    return text;
}

std::string Gdal(const std::vector<Item>& items) {
    std::string text;
    for (const auto& [point, residual, sigma] : items) {
        const auto& [id, from, to, used] = *point;
        text += "-gcp " + Joined({from.first, from.second, to.first, to.second}, " ") + "\n";
    }
    return text;
}

std::string Vrt(const std::vector<Item>& items, const std::string& crs) {
    std::string text = "<VRTDataset rasterXSize=\"1\" rasterYSize=\"1\">\n <GCPList";
    if (!crs.empty()) text += " Projection=\"" + Escaped(WithoutControls(crs)) + "\"";
    text += ">\n";
    for (const auto& [point, residual, sigma] : items) {
        const auto& [id, from, to, used] = *point;
        text += "  <GCP Id=\"" + Escaped(WithoutControls(id)) + "\" Pixel=\"" +
                ShortestText(from.first) + "\" Line=\"" + ShortestText(from.second) + "\" X=\"" +
                ShortestText(to.first) + "\" Y=\"" + ShortestText(to.second) + "\"/>\n";
    }
    return text + " </GCPList>\n <VRTRasterBand dataType=\"Byte\" band=\"1\"/>\n</VRTDataset>\n";
}

std::string EsriLinks(const std::vector<Item>& items) {
    std::string text;
    for (const auto& [point, residual, sigma] : items) {
        const auto& [id, from, to, used] = *point;
        text += IdentifierField(id) + '\t' +
                Joined({from.first, from.second, to.first, to.second}, "\t") + "\r\n";
    }
    return text;
}

std::string CadWorld(const std::vector<Item>& items) {
    std::string text;
    for (const auto& [point, residual, sigma] : items) {
        const auto& [id, from, to, used] = *point;
        text += Joined({from.first, from.second}, ",") + ' ' + Joined({to.first, to.second}, ",") +
                "\r\n";
    }
    return text;
}

std::string Grass(const std::vector<Item>& items) {
    std::string text =
        "# Ground control points\n# source east, north; target east, north; status\n";
    for (const auto& [point, residual, sigma] : items) {
        const auto& [id, from, to, used] = *point;
        text +=
            Joined({from.first, from.second, to.first, to.second}, " ") + (used ? " 1\n" : " 0\n");
    }
    return text;
}

/// The name of a system by which a GeoJSON file knows it; nothing for WKT and other texts.
std::string UrnOf(const std::string& crs) {
    constexpr std::string_view kEpsg = "EPSG:";
    if (crs.starts_with("urn:")) return crs;
    const bool code = crs.starts_with(kEpsg) && crs.size() > kEpsg.size() &&
                      crs.find_first_not_of("0123456789", kEpsg.size()) == std::string::npos;
    return code ? "urn:ogc:def:crs:EPSG::" + crs.substr(kEpsg.size()) : std::string();
}

/// A feature of a point; the end of the line where its residual leads makes it a line.
std::string Feature(const Item& item, const Point* end, const std::string& moreProperties) {
    const auto& [id, from, to, used] = *item.point;
    std::string coordinates = "[" + Joined({to.first, to.second}, ",") + "]";
    if (end != nullptr)
        coordinates = "[" + coordinates + ",[" + Joined({end->first, end->second}, ",") + "]]";
    std::string text = std::string(R"( {"type":"Feature","geometry":{"type":")") +
                       (end == nullptr ? "Point" : "LineString") + R"(","coordinates":)" +
                       coordinates + "},\n  \"properties\":{\"id\":" + JsonString(id) +
                       R"(,"src_first":)" + ShortestText(from.first) + R"(,"src_second":)" +
                       ShortestText(from.second) + (used ? R"(,"use":true)" : R"(,"use":false)");
    if (const Residual* residual = item.residual) {
        text += R"(,"res_first":)" + ShortestText(residual->first) + R"(,"res_second":)" +
                ShortestText(residual->second) + R"(,"res_total":)" +
                ShortestText(residual->Length());
    }
    if (const Point* sigma = item.sigma) {
        text += R"(,"sigma_first":)" + ShortestText(sigma->first) + R"(,"sigma_second":)" +
                ShortestText(sigma->second);
    }
    return text + moreProperties + "}}";
}

std::string Collection(const std::vector<std::string>& features, const std::string& urn) {
    std::string text = R"({"type":"FeatureCollection",)";
    if (!urn.empty()) {
        text += R"("crs":{"type":"name","properties":{"name":)" + JsonString(urn) + "}},";
    }
    text += R"("features":[)";
    const char* before = "\n";
    for (const std::string& feature : features) {
        text += before + feature;
        before = ",\n";
    }
    return text + "]}\n";
}

std::string GeoJson(const std::vector<Item>& items, const std::string& urn) {
    std::vector<std::string> features;
    features.reserve(items.size());
    for (const Item& item : items) features.push_back(Feature(item, nullptr, {}));
    return Collection(features, urn);
}

bool IsFinite(const Item& item) {
    const auto isFinite = [](double first, double second) {
        return std::isfinite(first) && std::isfinite(second);
    };
    const auto& [point, residual, sigma] = item;
    return isFinite(point->source.first, point->source.second) &&
           isFinite(point->destination.first, point->destination.second) &&
           (residual == nullptr || isFinite(residual->first, residual->second)) &&
           (sigma == nullptr || isFinite(sigma->first, sigma->second));
}

struct Abilities {
    bool marks, identifiers, sigmas, residuals;
};

/// What a format can hold.
Abilities AbilitiesOf(PointFormat format) {
    switch (format) {
        case PointFormat::kListing: return {false, true, true, false};
        case PointFormat::kCsv:
        case PointFormat::kGeoJson: return {true, true, true, true};
        case PointFormat::kQgis:
        case PointFormat::kGrass: return {true, false, false, false};
        case PointFormat::kVrt:
        case PointFormat::kEsriLink: return {false, true, false, false};
        case PointFormat::kGdal:
        case PointFormat::kCadWorld: return {false, false, false, false};
    }
    return {};
}

/// The points with the coordinates that a format has.
std::vector<ControlPoint> InFormat(const PointsToWrite& what, PointFormat format) {
    std::vector<ControlPoint> points(what.points.begin(), what.points.end());
    if (!IsOnMaps(format)) return points;
    for (auto& [id, source, destination, used] : points) {
        if (format != PointFormat::kGeoJson) source = OnMap(what.sourceAxes, source);
        destination = OnMap(what.targetAxes, destination);
    }
    return points;
}

}  // namespace

PointText WritePoints(const PointsToWrite& what, PointFormat format) {
    const auto [marks, identifiers, sigmas, residuals] = AbilitiesOf(format);
    const bool writesSigmas = sigmas && !what.sigmas.empty();
    const bool writesResiduals = residuals && !what.residuals.empty();
    const std::vector<ControlPoint> points = InFormat(what, format);
    PointText written;
    std::vector<Item> items;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const ControlPoint& point = points[i];
        if (!marks && !point.used) {
            ++written.excludedLeftOut;
            continue;
        }
        items.push_back({&point, writesResiduals ? &what.residuals[i] : nullptr,
                         writesSigmas ? &what.sigmas[i] : nullptr});
        written.identifiersLeftOut |= !identifiers && point.id != std::to_string(items.size());
    }
    written.sigmasLeftOut = !what.sigmas.empty() && !sigmas;
    if (!std::ranges::all_of(items, IsFinite)) {
        written.refusal = PointText::Refusal::kNotFinite;
        return written;
    }
    const bool holdsCrs = format == PointFormat::kQgis || format == PointFormat::kVrt;
    const std::string urn = format == PointFormat::kGeoJson ? UrnOf(what.crs) : std::string();
    written.crsLeftOut = !what.crs.empty() && !holdsCrs && urn.empty();
    switch (format) {
        case PointFormat::kListing: written.text = Listing(items); break;
        case PointFormat::kCsv: written.text = Csv(items, writesResiduals, writesSigmas); break;
        case PointFormat::kQgis: written.text = Qgis(items, what.crs); break;
        case PointFormat::kGdal: written.text = Gdal(items); break;
        case PointFormat::kVrt: written.text = Vrt(items, what.crs); break;
        case PointFormat::kEsriLink: written.text = EsriLinks(items); break;
        case PointFormat::kCadWorld:
            if (items.empty() || items.size() > 2) {
                written.refusal = PointText::Refusal::kTooManyPoints;
            } else {
                written.text = CadWorld(items);
            }
            break;
        case PointFormat::kGrass: written.text = Grass(items); break;
        case PointFormat::kGeoJson: written.text = GeoJson(items, urn); break;
    }
    return written;
}

PointText WriteResidualVectors(const PointsToWrite& what, double scale) {
    const std::vector<ControlPoint> points = InFormat(what, PointFormat::kGeoJson);
    const std::string urn = UrnOf(what.crs);
    PointText written;
    written.crsLeftOut = !what.crs.empty() && urn.empty();
    std::vector<std::string> features;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Item item{&points[i], &what.residuals[i],
                        what.sigmas.empty() ? nullptr : &what.sigmas[i]};
        const Point& measured = what.points[i].destination;
        const auto& [first, second] = what.residuals[i];
        const Point end = OnMap(what.targetAxes,
                                {measured.first + scale * first, measured.second + scale * second});
        if (!IsFinite(item) || !std::isfinite(end.first) || !std::isfinite(end.second)) {
            written.refusal = PointText::Refusal::kNotFinite;
            return written;
        }
        features.push_back(Feature(item, &end, R"(,"vector_scale":)" + ShortestText(scale)));
    }
    written.text = Collection(features, urn);
    return written;
}

}  // namespace kv_tr
