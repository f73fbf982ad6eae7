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
            window.grab().save(folder + "/adjustment-" + kNames[static_cast<int>(mode)] + "-" +
                               suffix + ".png");
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
