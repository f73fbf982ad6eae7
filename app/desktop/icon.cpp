// The pictures on buttons and in menus.
#include "desktop/icon.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

#include "desktop/small_svg.h"

/// Resources of a static library are there only once this was called, outside of namespaces.
static void AddIcons() { Q_INIT_RESOURCE(icons); }

namespace kv_tr::desktop {
namespace {

QColor ColourIn(QIcon::Mode mode) {
    const QPalette palette = QGuiApplication::palette();
    switch (mode) {
        case QIcon::Disabled: return palette.color(QPalette::Disabled, QPalette::ButtonText);
        case QIcon::Selected: return palette.color(QPalette::Active, QPalette::HighlightedText);
        default: return palette.color(QPalette::Active, QPalette::ButtonText);
    }
}

class Engine : public QIconEngine {
public:
    explicit Engine(QByteArray svg) : svg_(std::move(svg)) {}

    void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State) override {
        PaintSvg(*painter, place, svg_, ColourIn(mode));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }
    QIconEngine* clone() const override { return new Engine(*this); }

private:
    QByteArray svg_;
};

}  // namespace

QIcon Icon(const QString& name) {
    AddIcons();
    QFile file(":/kv_tr/icons/" + name + ".svg");
    const bool isThere = file.open(QIODevice::ReadOnly);
    return isThere ? QIcon(new Engine(file.readAll())) : QIcon();
}

}  // namespace kv_tr::desktop
