// Writes the pictures of the windows that the documents show: screenshots FOLDER [dark].
#include <QApplication>
#include <QPalette>
#include <QStyleFactory>
#include <cstdio>

#include "helpers/recording_platform.h"
#include "ui/qt/frmTr_window.h"

namespace {

using namespace kv_tr;

QPalette DarkPalette() {
    QPalette palette(QColor(53, 53, 53));
    palette.setColor(QPalette::Base, QColor(30, 30, 30));
    return palette;
}

/// The adjustment dialog in each mode: a bad pair beyond the limit, and one excluded.
void ShowAdjustment(const QString& folder, const char* suffix, std::int32_t language) {
    const test::RecordingPlatform platform(language);
    clsTrCalc engine;
    engine.bLoadXYsFromFile(EXAMPLES "/swiss_helmert_9.dat", false);
    engine.gdErrLimit = 0.05;
    engine.ExcludeByIx(3, false);
    frmTr form;
    form.bDoModal(engine, true, [&] {
        frmTrWindow window(form);
        window.resize(940, 560);
        window.show();
        for (const auto mode : {frmTr::Mode::kTable, frmTr::Mode::kEdit, frmTr::Mode::kGraph}) {
            constexpr const char* kNames[] = {"table", "edit", "graph"};
            form.opMode(mode);
            if (mode == frmTr::Mode::kEdit) form.Grid1Click(5, 2);
            if (mode == frmTr::Mode::kGraph) form.chkRad();
            QApplication::processEvents();
            const QString name =
                QString("/adjustment-%1-%2.png").arg(kNames[static_cast<int>(mode)], suffix);
            constexpr int kSmallest = 0;
            window.grab()
                .toImage()
                .convertToFormat(QImage::Format_RGB444, Qt::AvoidDither | Qt::ThresholdDither)
                .save(folder + name, "PNG", kSmallest);
        }
    });
}

}  // namespace

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    if (argc < 2) {
        std::puts("usage: screenshots FOLDER [dark]");
        return 2;
    }
    if (argc > 2) QApplication::setPalette(DarkPalette());
    ShowAdjustment(argv[1], "hu", kHungarian);
    ShowAdjustment(argv[1], "vi", kVietnamese);
    return 0;
}
