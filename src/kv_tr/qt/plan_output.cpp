// A plan as a file: SVG, PDF or PNG.
#include "kv_tr/qt/plan_output.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>

#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/qt/plan_painter.h"
#include "kv_tr/text/control_characters.h"
#include "kv_tr/text/file_names.h"
#include "kv_tr/text/replacing_file.h"

namespace kv_tr {
namespace {

constexpr double kPlanUnitsPerInch = 96;

void PaintPlanPage(QPainter& painter, const PlanPicture& page, double dotsPerUnit) {
    painter.scale(dotsPerUnit, dotsPerUnit);
    painter.translate(kPageMargin, kPageMargin);
    PaintPlan(painter, page, PlanPaper::kLight);
}

std::string PlanPdfOf(const PlanPicture& page, const std::string& title) {
    constexpr int kResolution = 1200;
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setTitle(QString::fromStdString(title));
    writer.setResolution(kResolution);
    writer.setPageLayout(
        QPageLayout(QPageSize(QPageSize::A4),
                    page.width > page.height ? QPageLayout::Landscape : QPageLayout::Portrait, {}));
    QPainter painter(&writer);
    PaintPlanPage(painter, page, kResolution / kPlanUnitsPerInch);
    painter.end();
    return buffer.data().toStdString();
}

std::string PlanPngOf(const PlanPicture& page) {
    constexpr int kPixelsPerUnit = 2;
    const QSizeF size(page.width + 2 * kPageMargin, page.height + 2 * kPageMargin);
    QImage image((size * kPixelsPerUnit).toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    PaintPlanPage(painter, page, kPixelsPerUnit);
    painter.end();
    QBuffer buffer;
    image.save(&buffer, "PNG");
    return buffer.data().toStdString();
}

}  // namespace

std::optional<std::string> SavePlan(const std::string& path, const PlanIndex& index,
                                    const PlanWords& words, const PlanOptions& options) {
    const bool isPdf = HasExtension(path, "pdf");
    const bool isPng = HasExtension(path, "png");
    if (!isPdf && !isPng && !HasExtension(path, "svg")) {
        return Translated(Text::kPictureExtension, {WithoutControls(path), ".svg, .pdf, .png"});
    }
    ReplacingFile file(path);
    if (!file.IsOpen()) return Translated(Text::kCannotOpen) + WithoutControls(path);
    const PlanPicture page = DrawPlanPage(index, words, options);
    file.Write(isPdf   ? PlanPdfOf(page, words.title)
               : isPng ? PlanPngOf(page)
                       : SvgOf(page, kPageMargin));
    if (!file.Commit()) return WriteFailure(path).what();
    return {};
}

}  // namespace kv_tr
