// Pages of the residual graph to a printer, a PDF or a picture file.
#include "kv_tr/qt/page_output.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPrintPreviewDialog>
#include <QPrinter>

#include "kv_tr/forms/residual_plan.h"
#include "kv_tr/published/GCommonDialog.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/settings.h"
#include "kv_tr/qt/cursor_scope.h"
#include "kv_tr/qt/graph_area.h"
#include "kv_tr/text/file_names.h"

namespace kv_tr {
namespace {

constexpr double kUnitsPerInch = 96;

std::string PngOf(const GraphPage& page) {
    constexpr int kPixelsPerUnit = 2;
    constexpr double kMargin = GraphPage::kMargin;
    const QSizeF size(page.width + 2 * kMargin, page.height + 2 * kMargin);
    QImage image(size.toSize() * kPixelsPerUnit, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(kPixelsPerUnit, kPixelsPerUnit);
    painter.translate(kMargin, kMargin);
    PaintPage(painter, page);
    painter.end();
    QBuffer buffer;
    image.save(&buffer, "PNG");
    return buffer.data().toStdString();
}

}  // namespace

void PreviewAndPrint(const ResidualPlan& plan, const std::string& title, QWidget* parent) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageMargins(QMarginsF(15, 15, 15, 15), QPageLayout::Millimeter);
    if (plan.IsWide()) printer.setPageOrientation(QPageLayout::Landscape);
    QPrintPreviewDialog preview(&printer, parent);
    preview.setWindowTitle(QString::fromStdString(title));
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, [&plan](QPrinter* paper) {
        QPainter painter(paper);
        if (!painter.isActive()) return ReportOpenFailure(paper->outputFileName().toStdString());
        const double dotsPerUnit = paper->resolution() / kUnitsPerInch;
        const QSizeF size = QSizeF(painter.viewport().size()) / dotsPerUnit;
        painter.scale(dotsPerUnit, dotsPerUnit);
        PaintPage(painter, plan.Page(size.width(), size.height()));
    });
    const OwnCursors cursors;
    preview.exec();
}

void ChooseAndSavePicture(const ResidualPlan& plan, const std::string& title) {
    FileDialogArguments arguments{.Filter = Translated(Text::kPictureFilter),
                                  .InitDir = InitDir(),
                                  .DlgTitle = title,
                                  .DefaultExt = "svg"};
    if (!GCommonDialog().VBGetSaveFileName(arguments)) return;
    const std::string& path = arguments.Filename;
    InitDir(GetFolderPart(path));
    const bool png = HasExtension(path, "png");
    if (!png && !HasExtension(path, "svg")) {
        return ShowMessage(Translated(Text::kPictureExtension, {path, ".svg, .png"}),
                           Icon::kExclamation);
    }
    const GraphPage page = plan.Page(GraphPage::kPictureWidth, GraphPage::kPictureHeight);
    SavePicture(path, png ? PngOf(page) : SvgOf(page));
}

}  // namespace kv_tr
