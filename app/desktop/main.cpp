// kv_tr_desktop: the component in windows.
#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <filesystem>

#include "common/languages.h"
#include "common/standard_streams.h"
#include "desktop/main_window.h"
#include "kv_tr/published/component.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/qt/qt_platform.h"

namespace {

using namespace kv_tr;

/// English for a language that the component does not speak.
std::int32_t LanguageNamed(const QString& name) {
    const std::int32_t id = app::LanguageCoded(name.toStdString());
    return id == 0 ? kEnglish : id;
}

/// Gives Qt's own windows the component's language, as far as Qt has been translated.
void TranslateQt(QTranslator& texts) {
    QCoreApplication::removeTranslator(&texts);
    for (const app::Language& language : app::Languages()) {
        if (language.id != CurrentMlLanguage()) continue;
        const QString code =
            QString::fromUtf8(language.code.data(), qsizetype(language.code.size()));
        if (texts.load("qtbase_" + code, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
            QCoreApplication::installTranslator(&texts);
        }
    }
}

}  // namespace

int main(int argc, char* argv[]) {
    if (!app::OpenMissingStandardStreams()) return 1;
    QApplication application(argc, argv);
    QApplication::setApplicationName("KV_Tr");
    QApplication::setApplicationVersion(KV_TR_VERSION);
    QApplication::setDesktopFileName("kv_tr");
    QApplication::setWindowIcon(QIcon::fromTheme("kv_tr"));
    QCommandLineParser arguments;
    arguments.addHelpOption();
    arguments.addVersionOption();
    arguments.addOption({"language", "hu, ro, vi, en, sr", "language"});
    arguments.addPositionalArgument("files", "control points, parameters or coordinates",
                                    "[FILE...]");
    arguments.process(application);

    auto texts = std::make_unique<EmbeddedTexts>(LanguageNamed(QLocale().name().left(2)));
    EmbeddedTexts& switchable = *texts;
    Platform platform = QtPlatform(kEnglish);
    platform.texts = std::move(texts);
    InstallPlatform(std::move(platform));
    DecimalSeparator('.');
    const std::int32_t language =
        arguments.isSet("language")
            ? LanguageNamed(arguments.value("language"))
            : desktop::DesktopForm::RememberedLanguage(switchable.HostLanguage());
    switchable.SwitchLanguage(language, {});
    SetMlLanguage(language, {});
    UseTextFile(std::filesystem::exists(TextFile()));
    InitMlStrings();

    QTranslator ownTexts;
    TranslateQt(ownTexts);
    const Subscription languageChanged = OnLanguageChange([&ownTexts] { TranslateQt(ownTexts); });
    desktop::DesktopForm form(switchable);
    desktop::MainWindow window(form, KV_TR_VERSION);
    window.show();
    for (const QString& file : arguments.positionalArguments()) window.Open(file.toStdString());
    return QApplication::exec();
}
