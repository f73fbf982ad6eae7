// kv_tr_desktop: the adjustment dialog on a control-point file.
#include <QApplication>
#include <QCommandLineParser>
#include <QLocale>
#include <array>

#include "engine/clsTrCalc.h"
#include "support/component.h"
#include "support/ml_strings.h"
#include "support/number_text.h"
#include "ui/qt/qt_platform.h"

namespace {

using namespace kv_tr;

struct Language {
    const char* name;
    std::int32_t id;
};
constexpr std::array kLanguages{Language{"hu", kHungarian}, Language{"ro", kRomanian},
                                Language{"vi", kVietnamese}, Language{"en", kEnglish},
                                Language{"sr", kSerbian}};

/// English for a language that the component does not speak.
std::int32_t LanguageNamed(const QString& name) {
    for (const Language& language : kLanguages) {
        if (name == QLatin1String(language.name)) return language.id;
    }
    return kEnglish;
}

/// The richest of the usual linear types that the points allow.
enuTR_TYPE FirstType(const clsTrCalc& engine) {
    return engine.bXYCntIsValid4TrType(TR_AFFIN) ? TR_AFFIN : TR_HELMERT;
}

}  // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("KV_Tr");
    QCommandLineParser arguments;
    arguments.addHelpOption();
    arguments.addOption({"language", "hu, ro, vi, en, sr", "language", QLocale().name().left(2)});
    arguments.addPositionalArgument("points", "control-point file");
    arguments.process(application);
    if (arguments.positionalArguments().size() != 1) arguments.showHelp(2);

    const std::int32_t language = LanguageNamed(arguments.value("language"));
    InstallPlatform(QtPlatform(language));
    DecimalSeparator('.');
    clsTrCalc engine;
    if (!engine.bLoadXYsFromFile(arguments.positionalArguments().first().toStdString(), false)) {
        return 1;
    }
    engine.eTrType(FirstType(engine));
    return engine.bDoModal(false) ? 0 : 1;
}
