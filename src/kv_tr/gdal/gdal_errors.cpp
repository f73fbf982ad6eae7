// What GDAL complains of, kept instead of printed.
#include "kv_tr/gdal/gdal_errors.h"

#include <cpl_error.h>
#include <gdal.h>

#include <mutex>

namespace kv_tr::gdal {

void RegisterDrivers() {
    static std::once_flag once;
    std::call_once(once, [] { GDALAllRegister(); });
}

ErrorLog::ErrorLog() {
    CPLPushErrorHandlerEx([](CPLErr severity, CPLErrorNum number,
                             const char* message) { Note(severity, number, message); },
                          this);
}

ErrorLog::~ErrorLog() { CPLPopErrorHandler(); }

void ErrorLog::Note(int severity, int /*number*/, const char* message) {
    auto& log = *static_cast<ErrorLog*>(CPLGetErrorHandlerUserData());
    if (severity == CE_Debug || severity == CE_None) return;
    auto& messages = severity == CE_Warning ? log.warnings_ : log.failures_;
    std::string text = message;
    text.erase(text.find_last_not_of("\r\n") + 1);
    messages.push_back(std::move(text));
}

}  // namespace kv_tr::gdal
