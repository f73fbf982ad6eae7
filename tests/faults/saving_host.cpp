// A host that saves with the published classes what the command line does not: settings, control
// points, a log, parameters.
#include <cstdio>
#include <exception>
#include <string_view>

#include "kv_tr/published/clsTr.h"
#include "kv_tr/published/component.h"
#include "kv_tr/published/console_platform.h"
#include "kv_tr/published/settings.h"

namespace kv_tr::test {
namespace {

struct NoSettings : SettingsStore {
    std::string Read(const SettingKey&, const std::string& fallback) override { return fallback; }
    void Write(const SettingKey&, const std::string&) override {}
};

void Save(std::string_view what) {
    if (what == "settings") {
        SettingsFile(".").Write({"App", "Settings", "Path"}, "new");
        return;
    }
    Platform platform = ConsolePlatform(kEnglish);
    platform.settings = std::make_unique<NoSettings>();
    InstallPlatform(std::move(platform));
    clsTr transformation;
    const auto engine = transformation.oCalcTr();
    if (engine->bLoadXYsFromFile("points.dat", false)) {
        engine->eTrType(what == "polynomial" ? TR_POLI_2 : TR_HELMERT);
        engine->DoCalcTr();
        transformation.udtTrPrm(engine->udtTrPrm());
        if (what == "points") engine->bSaveXYs4Tr("saved.dat");
        if (what == "log") engine->SaveLog("saved.txt");
        if (what == "linear") transformation.bSaveAffinTrPrm("saved.trp");
        if (what == "polynomial") transformation.bSavePoliTrPrm("saved.all");
    }
    transformation.TearDown();
}

}  // namespace
}  // namespace kv_tr::test

int main(int, char** arguments) {
    try {
        kv_tr::test::Save(arguments[1]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
