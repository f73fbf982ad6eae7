// A picture below a plan, such as a scanned map.
#include "kv_tr/qt/plan_background.h"

#include <QFile>
#include <QImageReader>
#include <QPainter>
#include <filesystem>

#include "kv_tr/interchange/transformation_import.h"

namespace kv_tr {
namespace {

namespace fs = std::filesystem;

/// The names that a world file beside a picture may have: .tif has .tfw, .tifw or .wld.
std::vector<fs::path> WorldFilesOf(const fs::path& picture) {
    const std::string ending = picture.extension().string();
    std::vector<fs::path> names;
    const auto add = [&](const std::string& worldEnding) {
        names.push_back(fs::path(picture).replace_extension(worldEnding));
    };
    if (ending.size() >= 3) add(ending.substr(0, 2) + ending.back() + "w");
    add(ending + "w");
    add(".wld");
    return names;
}

/// The transformation counts pixels from the corner, the second coordinate upwards.
QTransform FromCorner(const Transformation& world) {
    const Point origin = world.Apply({0, 0});
    const Point right = world.Apply({1, 0});
    const Point down = world.Apply({0, -1});
    return {right.first - origin.first,
            right.second - origin.second,
            down.first - origin.first,
            down.second - origin.second,
            origin.first,
            origin.second};
}

}  // namespace

std::optional<PlanBackground> ReadBackground(const std::string& fileName) {
    for (const fs::path& name : WorldFilesOf(fileName)) {
        constexpr qint64 kMost = 4096;  // of six numbers
        QFile file(QString::fromStdString(name.string()));
        if (!file.open(QIODevice::ReadOnly)) continue;
        const ImportedTransformation world =
            ReadTransformation(file.read(kMost).toStdString(), TransformationFormat::kWorldFile);
        if (!world.Complete()) return std::nullopt;
        const QTransform toPlan = FromCorner(world.record.transformation);
        const QImage image = QImageReader(QString::fromStdString(fileName)).read();
        if (image.isNull() || !toPlan.isInvertible()) return std::nullopt;
        return PlanBackground{image.convertToFormat(QImage::Format_RGB32), toPlan};
    }
    return std::nullopt;
}

void PaintBackground(QPainter& painter, const PlanBackground& background, const PlanView& view) {
    constexpr double kPale = 0.5;
    const PlanRect frame = view.Frame();
    const Point origin = view.ToSurface({0, 0});
    painter.save();
    painter.setClipRect(QRectF(frame.left, frame.top, frame.Width(), frame.Height()));
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setOpacity(kPale);
    const double scale = 1 / view.metresPerUnit;
    const QTransform toSurface(scale, 0, 0, -scale, origin.first, origin.second);
    painter.setTransform(background.toPlan * toSurface, true);
    painter.drawImage(0, 0, background.image);
    painter.restore();
}

}  // namespace kv_tr
