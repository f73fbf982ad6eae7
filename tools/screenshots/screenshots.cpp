// Writes the pictures of the windows that the documents show: screenshots FOLDER LANGUAGE [dark].
#include <QApplication>
#include <QLineEdit>
#include <QPalette>
#include <QStyleFactory>
#include <QTabWidget>
#include <cstdio>
#include <filesystem>

#include "common/languages.h"
#include "desktop/parameters_window.h"
#include "desktop/preview_dialog.h"
#include "desktop/transform_files_dialog.h"
#include "desktop/workbench_window.h"
#include "helpers/files.h"
#include "helpers/recording_platform.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/qt/frmAffinTrPrm_window.h"
#include "kv_tr/qt/frmChooseDAT2M1_window.h"
#include "kv_tr/qt/frmChoosePrm_window.h"
#include "kv_tr/qt/frmTr_window.h"
#include "kv_tr/qt/text_window.h"

namespace {

using namespace kv_tr;

class Camera {
public:
    Camera(QString folder, const char* language) : folder_(std::move(folder)), suffix_(language) {}

    void Take(QWidget& window, const char* name) const {
        constexpr int kSmallestFile = 0;
        window.show();
        QApplication::processEvents();
        window.grab()
            .toImage()
            .convertToFormat(QImage::Format_RGB444, Qt::AvoidDither | Qt::ThresholdDither)
            .save(folder_ + "/" + name + "-" + suffix_ + ".png", "PNG", kSmallestFile);
    }

    /// The window of a form while its dialog is open on some object.
    template <class Window, class Form>
    void TakeDialog(const char* name, const auto&... object) const {
        Form form;
        form.bDoModal(object.get()..., [&] {
            Window window(form);
            Take(window, name);
        });
    }

private:
    QString folder_;
    QString suffix_;
};

/// The adjustment dialog in each mode: a bad pair beyond the limit, and one excluded.
void TakeAdjustment(const Camera& camera) {
    clsTrCalc engine;
    engine.bLoadXYsFromFile(EXAMPLES "/swiss_helmert_9.dat", false);
    engine.gdErrLimit = 0.05;
    engine.ExcludeByIx(3, false);
    frmTr form;
    form.bDoModal(engine, true, [&] {
        frmTrWindow window(form);
        window.resize(940, 700);
        camera.Take(window, "adjustment-table");
        form.opMode(frmTr::Mode::kEdit);
        form.Table().Grid1Click(5, 2);
        camera.Take(window, "adjustment-edit");
        form.opMode(frmTr::Mode::kGraph);
        form.chkRad();
        camera.Take(window, "adjustment-graph");
        form.opMode(frmTr::Mode::kTable);
        window.resize(1040, 700);
        form.cmdStatistics();
        camera.Take(window, "adjustment-statistics");
        form.cmdTypes();
        camera.Take(window, "adjustment-types");
    });
}

void TakeDialogs(const Camera& camera) {
    clsTr transformation;
    clsTrCalc& engine = *transformation.oCalcTr();
    engine.bLoadXYsFromFile(EXAMPLES "/swiss_helmert_9.dat", false);
    engine.eTrType(TR_HELMERT);
    engine.DoCalcTr();
    transformation.udtTrPrm(engine.udtTrPrm());
    camera.TakeDialog<frmChoosePrmWindow, frmChoosePrm>("choose-parameters",
                                                        std::ref(transformation));
    camera.TakeDialog<frmAffinTrPrmWindow, frmAffinTrPrm>("six-parameters",
                                                          std::ref(transformation));
    const std::string title = "swiss_helmert_9.dat";
    camera.TakeDialog<ControlPointWindow, frmXY4Tr>("control-points", std::ref(engine),
                                                    std::cref(title));
    enuTR_TYPE type = TR_STG_EOV_10e;
    transformation.udtTrPrmByDAT2M1(type);
    camera.TakeDialog<PolynomialWindow, frmPoliTrPrm>("polynomial", std::ref(transformation));
    camera.TakeDialog<frmChooseDAT2M1Window, frmChooseDAT2M1>("national", std::ref(type));
}

/// The main window on its way from two lists of points to a transformed file.
void TakeWorkbench(const Camera& camera, desktop::DesktopForm& form) {
    desktop::WorkbenchWindow window(form, "0.1.0", {});
    window.resize(1120, 720);
    camera.Take(window, "start-page");
    workbench::OpenPreview preview;
    preview.TakeLists("old_survey.txt", "new_survey.txt");
    desktop::PreviewDialog dialog(preview, nullptr);
    dialog.resize(760, 520);
    camera.Take(dialog, "preview");
    window.Project().Begin(preview);
    workbench::Workbench& bench = window.Project().Bench();
    bench.SetType(Type::kHelmert);
    camera.Take(window, "workbench");
    bench.Exclude({bench.Project().WorstSuspect()}, "new list: digits exchanged");
    auto* tabs = window.findChild<QTabWidget*>("tabs");
    tabs->setCurrentIndex(tabs->count() - 1);
    camera.Take(window, "workbench-history");
    desktop::TransformFilesDialog transform({.transformation = bench.Project().Adjusted().Result()},
                                            nullptr);
    transform.Add({"parcel_corners.txt"});
    camera.Take(transform, "transform-file");
}

void TakeParameters(const Camera& camera, desktop::DesktopForm& form) {
    const test::TemporaryFolder folder;
    const std::string parameters = folder.File("kleinluetzel.trp");
    test::WriteFile(parameters, "0.322\n0.99999963\n0.00000129\n1.337\n-0.00000129\n0.99999963\n");
    desktop::ParametersWindow window(
        form, [] {}, nullptr);
    form.OpenFile(parameters);
    for (const auto& [name, text] :
         {std::pair{"Y1", "591294.43"}, {"X1", "255778.25"}, {"direction", "50"}}) {
        window.findChild<QLineEdit*>(name)->setText(text);
    }
    camera.Take(window, "desktop");
}

}  // namespace

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    if (argc < 3) {
        std::puts("usage: screenshots FOLDER LANGUAGE [dark]");
        return 2;
    }
    if (argc > 3) {
        QPalette dark(QColor(53, 53, 53));
        dark.setColor(QPalette::Base, QColor(30, 30, 30));
        QApplication::setPalette(dark);
    }
    test::RecordingPlatform platform(app::LanguageCoded(argv[2]));
    const std::filesystem::path folder = std::filesystem::absolute(argv[1]);
    const Camera camera(QString::fromStdString(folder.string()), argv[2]);
    TakeAdjustment(camera);
    TakeDialogs(camera);
    std::filesystem::current_path(EXAMPLES "/two_lists");  // short names in the pictures
    desktop::DesktopForm form(*platform.texts);
    TakeWorkbench(camera, form);
    TakeParameters(camera, form);
    return 0;
}
