// A small host program: fits control points of its own and transforms with the result.
#include <cstdio>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "kv_tr/published/clsTr.h"
#include "kv_tr/published/component.h"
#include "kv_tr/published/console_platform.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/number_format.h"

namespace {

// The ports: what a host with windows would show in them, this one prints.

/// Remembers trouble: some functions return normally after they have told the user of it.
class PrintedMessages : public kv_tr::MessageBox {
public:
    explicit PrintedMessages(bool& trouble) : trouble_(trouble) {}

    kv_tr::Answer Show(const kv_tr::Message& message) override {
        const bool warning = message.icon == kv_tr::Icon::kExclamation;
        if (warning) trouble_ = true;
        std::cout << (warning ? "! " : "i ") << message.text << std::endl;
        return message.defaultAnswer;
    }

private:
    bool& trouble_;
};

/// Chooses what the user gave on the command line, wherever the component asks for a file.
class GivenFile : public kv_tr::FileChooser {
public:
    explicit GivenFile(std::string path) : path_(std::move(path)) {}

    std::optional<kv_tr::FileChoice> ChooseToOpen(const kv_tr::FileRequest& request) override {
        std::cout << "? " << request.title << ": " << path_ << std::endl;
        return kv_tr::FileChoice{.path = path_};
    }
    std::optional<kv_tr::FileChoice> ChooseToSave(const kv_tr::FileRequest& request) override {
        return ChooseToOpen(request);
    }

private:
    std::string path_;
};

class SettingsInMemory : public kv_tr::SettingsStore {
public:
    std::string Read(const kv_tr::SettingKey& key, const std::string& fallback) override {
        const auto found = values_.find(key.section + "/" + key.key);
        return found == values_.end() ? fallback : found->second;
    }
    void Write(const kv_tr::SettingKey& key, const std::string& value) override {
        values_[key.section + "/" + key.key] = value;
    }

private:
    std::map<std::string, std::string> values_;
};

void InstallPorts(const std::string& parameterFile, bool& trouble) {
    kv_tr::Platform platform = kv_tr::ConsolePlatform(kv_tr::kEnglish);  // texts and dialogs
    platform.messages = std::make_unique<PrintedMessages>(trouble);
    platform.files = std::make_unique<GivenFile>(parameterFile);
    platform.settings = std::make_unique<SettingsInMemory>();
    kv_tr::InstallPlatform(std::move(platform));
    kv_tr::DecimalSeparator('.');  // files of this host travel between countries
}

/// Four points known in both systems; the last one was mistyped by a metre.
const std::vector<kv_tr::typeXYs4Tr> kControlPoints{{.sId = "66.301",
                                                     .dXsour = 591294.43,
                                                     .dYsour = 255778.25,
                                                     .dXdest = 591294.92,
                                                     .dYdest = 255778.741},
                                                    {.sId = "67.150",
                                                     .dXsour = 604153.27,
                                                     .dYsour = 254184.85,
                                                     .dXdest = 604153.697,
                                                     .dYdest = 254185.329},
                                                    {.sId = "86.323",
                                                     .dXsour = 591692.66,
                                                     .dYsour = 250616.8,
                                                     .dXdest = 591693.09,
                                                     .dYdest = 250617.27},
                                                    {.sId = "87.118",
                                                     .dXsour = 603986.61,
                                                     .dYsour = 251663.88,
                                                     .dXdest = 603988.049,
                                                     .dYdest = 251664.345}};

/// Prints the residuals and yields the index of the greatest one.
std::int32_t PrintResiduals(const kv_tr::clsTrCalc& engine) {
    std::vector<kv_tr::typeXYs4Tr> pairs;
    std::int32_t count = 0;
    engine.GetAllXYs(pairs, count);
    std::int32_t worst = 0;
    for (std::int32_t i = 0; i < count; ++i) {
        const auto& pair = pairs[i];
        std::printf("%-8s %8.3f %8.3f%s\n", pair.sId.c_str(), pair.dXerr, pair.dYerr,
                    pair.bNotUsed ? "  left out" : "");
        if (kv_tr::ResidualLength(pair) > kv_tr::ResidualLength(pairs[worst])) worst = i;
    }
    std::printf("rms %.3f m\n", engine.dRmsErr());
    std::fflush(stdout);
    return worst;
}

/// False when there are too few points or the user cancels.
bool FitAndTransform(const std::string& logFile) {
    kv_tr::clsTr transformation;
    const auto engine = transformation.oCalcTr();

    // Add the points and fit. engine->bDoModal(true) would let the user do it in a window.
    engine->AddXY4Tr(kControlPoints, false);
    engine->eTrType(kv_tr::TR_HELMERT);
    if (!engine->bXYCntIsValid4TrType(engine->eTrType())) return false;
    engine->DoCalcTr();
    const std::int32_t worst = PrintResiduals(*engine);
    if (engine->dRmsErr() > engine->gdErrLimit) {
        engine->ExcludeByIx(worst, true);
        PrintResiduals(*engine);
    }
    engine->SaveLog(logFile);

    // Copy the record, apply it.
    transformation.udtTrPrm(engine->udtTrPrm());
    double first = 0, second = 0;
    transformation.TrXY(595575.66, 252297.81, first, second);
    std::printf("a point    %.3f %.3f\n", first, second);
    std::vector<double> firsts{596116.51, 599399.78}, seconds{247679.36, 251479.78};
    engine->bTrXYArr(firsts, seconds, firsts, seconds);
    std::printf("two more   %.3f %.3f  %.3f %.3f\n", firsts[0], seconds[0], firsts[1], seconds[1]);
    std::fflush(stdout);

    // Save: the file chooser is asked for the name.
    std::string fileName, folder;
    transformation.bChooseFileAndSaveTrPrm(fileName, folder);

    transformation.TearDown();
    return !fileName.empty();
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 3) {
        std::cerr << "usage: host PARAMETERS.trp LOG.txt" << std::endl;
        return 2;
    }
    try {
        bool trouble = false;
        InstallPorts(arguments[1], trouble);
        const bool done = FitAndTransform(arguments[2]);
        const bool printed = std::cout.flush() && std::fflush(stdout) == 0 && !std::ferror(stdout);
        if (!printed) std::cerr << "not everything could be printed" << std::endl;
        return done && printed && !trouble ? 0 : 1;
    } catch (const kv_tr::RuntimeError& error) {
        std::cerr << "error " << static_cast<int>(error.Number()) << ": " << error.what()
                  << std::endl;
        return 1;
    }
}
