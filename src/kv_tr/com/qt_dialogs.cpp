// The dialogs of the component as Qt windows in a host that knows nothing of Qt.
#include "kv_tr/com/qt_dialogs.h"

#include <QApplication>
#include <QThread>
#include <QtPlugin>
#include <atomic>
#include <utility>

#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/qt/qt_platform.h"

#ifdef QT_STATIC
Q_IMPORT_PLUGIN(QWindowsIntegrationPlugin)
#endif

namespace kv_tr::com {
namespace {

std::atomic<bool> inUse = false;

/// Whether Qt windows can be opened in this thread. The first one makes Qt's application, which
/// lives as long as the process and belongs to that thread from then on.
bool HasApplication() {
    if (!QCoreApplication::instance()) {
        static int count = 1;
        static char name[] = "kv_tr";
        static char* arguments[] = {name, nullptr};
        new QApplication(count, arguments);
        inUse = true;
    }
    return qobject_cast<QApplication*>(QCoreApplication::instance()) &&
           QCoreApplication::instance()->thread() == QThread::currentThread();
}

class DialogsOfHost : public Dialogs {
public:
    explicit DialogsOfHost(std::unique_ptr<Dialogs> windows) : windows_(std::move(windows)) {}

    bool Adjust(clsTrCalc& engine, bool showApplyButton) override {
        return MayOpen() && windows_->Adjust(engine, showApplyButton);
    }
    bool ChooseParameters(clsTr& parameters) override {
        return MayOpen() && windows_->ChooseParameters(parameters);
    }
    bool EditAffine(clsTr& parameters) override {
        return MayOpen() && windows_->EditAffine(parameters);
    }
    bool ViewPolynomial(clsTr& parameters) override {
        return MayOpen() && windows_->ViewPolynomial(parameters);
    }
    bool ChooseNational(enuTR_TYPE& type) override {
        return MayOpen() && windows_->ChooseNational(type);
    }
    bool ListControlPoints(clsTr& parameters, const std::string& title) override {
        return MayOpen() && windows_->ListControlPoints(parameters, title);
    }

private:
    static bool MayOpen() {
        if (HasApplication()) return true;
        ShowMessage(Translated(Text::kNoWindows), Icon::kExclamation);
        return false;
    }

    std::unique_ptr<Dialogs> windows_;
};

}  // namespace

void UseQtDialogs(Platform& platform) {
    Platform qt = QtPlatform(kHungarian);
    platform.dialogs = std::make_unique<DialogsOfHost>(std::move(qt.dialogs));
    platform.makePdf = std::move(qt.makePdf);
}

bool QtIsInUse() { return inUse; }

}  // namespace kv_tr::com
