// kv_tr_desktop: the component in windows.
#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QIcon>
#include <QLocale>
#include <filesystem>

#include "common/languages.h"
#include "common/standard_streams.h"
#include "desktop/workbench_window.h"
#include "kv_tr/published/component.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/qt/file_name.h"
#include "kv_tr/qt/qt_platform.h"
#include "kv_tr/qt/qt_words.h"
#include "kv_tr/text/version.h"

namespace {

using namespace kv_tr;

/// English for a language that the component does not speak.
std::int32_t LanguageNamed(const QString& name) {
    const std::int32_t id = app::LanguageCoded(name.toStdString());
    return id == 0 ? kEnglish : id;
}

}  // namespace

int main(int argc, char* argv[]) {
    if (!app::OpenMissingStandardStreams()) return 1;
    QApplication application(argc, argv);
    QApplication::setApplicationName("KV_Tr");
    QApplication::setApplicationVersion(Version());
    QApplication::setDesktopFileName("kv_tr");
    QApplication::setWindowIcon(QIcon::fromTheme("kv_tr"));
    QCommandLineParser arguments;
    arguments.addHelpOption();
    arguments.addVersionOption();
    arguments.addOption({"language", "hu, ro, vi, en, sr", "language"});
    arguments.addPositionalArgument("files", "projects, control points, parameters or coordinates",
                                    "[FILE...]");
    arguments.process(application);

    auto texts = std::make_unique<EmbeddedTexts>(
        LanguageNamed(QLocale::system().uiLanguages().value(0).left(2)));
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

    UseQtWords();
    const Subscription languageChanged = OnLanguageChange([] { ShowQtWordsAnew(); });
    desktop::DesktopForm form(switchable);
    desktop::WorkbenchWindow window(form, Version());
    window.show();
    window.OfferLeftovers();
    std::vector<std::string> files;
    for (const QString& file : arguments.positionalArguments())
        files.push_back(FileNameOf(QFileInfo(file).absoluteFilePath()));
    window.OpenFiles(files);
    return QApplication::exec();
}
