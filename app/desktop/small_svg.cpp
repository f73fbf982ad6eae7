// Small pictures in SVG: icons, and the points of recent projects.
#include "desktop/small_svg.h"

#include <QPainter>
#include <QPainterPath>
#include <QRegularExpression>
#include <QXmlStreamReader>
#include <algorithm>

namespace kv_tr::desktop {
namespace {

/// How shapes are painted, as far as an element says so.
struct Look {
    QString fill = "black";
    QString stroke = "none";
    double width = 1;

    void Take(const QXmlStreamAttributes& attributes) {
        if (attributes.hasAttribute("fill")) fill = attributes.value("fill").toString();
        if (attributes.hasAttribute("stroke")) stroke = attributes.value("stroke").toString();
        if (attributes.hasAttribute("stroke-width"))
            width = attributes.value("stroke-width").toDouble();
    }
};

QColor ColourOf(const QString& name, const QColor& current) {
    if (name == "none") return Qt::transparent;
    return name == "currentColor" ? current : QColor(name);
}

QPainterPath PathOf(const QString& text) {
    static const QRegularExpression kToken("[MLHVCZ]|-?[0-9.]+");
    QPainterPath path;
    QChar command;
    QList<double> numbers;
    const auto needed = [&command] {
        return command == 'C' ? 6 : command == 'M' || command == 'L' ? 2 : 1;
    };
    for (auto tokens = kToken.globalMatch(text); tokens.hasNext();) {
        const QString token = tokens.next().captured();
        if (token[0].isLetter()) {
            command = token[0];
            numbers.clear();
            if (command == 'Z') path.closeSubpath();
            continue;
        }
        numbers << token.toDouble();
        if (numbers.size() < needed()) continue;
        const QPointF at = path.currentPosition();
        if (command == 'M') path.moveTo(numbers[0], numbers[1]);
        if (command == 'L') path.lineTo(numbers[0], numbers[1]);
        if (command == 'H') path.lineTo(numbers[0], at.y());
        if (command == 'V') path.lineTo(at.x(), numbers[0]);
        if (command == 'C')
            path.cubicTo(numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], numbers[5]);
        numbers.clear();
    }
    return path;
}

QPainterPath ShapeOf(const QXmlStreamReader& reader) {
    const QXmlStreamAttributes attributes = reader.attributes();
    if (reader.name() == QLatin1String("path")) return PathOf(attributes.value("d").toString());
    QPainterPath path;
    if (reader.name() == QLatin1String("circle")) {
        const double radius = attributes.value("r").toDouble();
        path.addEllipse({attributes.value("cx").toDouble(), attributes.value("cy").toDouble()},
                        radius, radius);
    }
    return path;
}

}  // namespace

void PaintSvg(QPainter& painter, const QRectF& place, const QByteArray& svg, const QColor& colour) {
    QXmlStreamReader reader(svg);
    Look common;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement) continue;
        Look look = common;
        look.Take(reader.attributes());
        if (reader.name() == QLatin1String("svg")) {
            const QSizeF size(std::max(reader.attributes().value("width").toDouble(), 1.0),
                              std::max(reader.attributes().value("height").toDouble(), 1.0));
            const double scale =
                std::min(place.width() / size.width(), place.height() / size.height());
            painter.translate(place.center());
            painter.scale(scale, scale);
            painter.translate(-size.width() / 2, -size.height() / 2);
            common = look;
            continue;
        }
        painter.setBrush(ColourOf(look.fill, colour));
        painter.setPen(look.stroke == "none" ? QPen(Qt::NoPen)
                                             : QPen(ColourOf(look.stroke, colour), look.width,
                                                    Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(ShapeOf(reader));
    }
    painter.restore();
}

}  // namespace kv_tr::desktop
