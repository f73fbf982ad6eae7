// What GDAL complains of, kept instead of printed.
#pragma once

#include <string>
#include <vector>

namespace kv_tr::gdal {

/// Makes GDAL know its formats; once is enough, more do no harm. Any thread may call it.
void RegisterDrivers();

/// While it lives, what GDAL complains of in this thread goes here and not to the standard error.
/// Scopes nest: each hears what comes while it is the youngest.
class ErrorLog {
public:
    ErrorLog();
    ~ErrorLog();
    ErrorLog(const ErrorLog&) = delete;
    ErrorLog& operator=(const ErrorLog&) = delete;

    /// Warnings and failures in the order in which they came, without the ends of their lines.
    const std::vector<std::string>& Warnings() const { return warnings_; }
    const std::vector<std::string>& Failures() const { return failures_; }
    /// The last failure, which mostly names the cause; empty without one.
    std::string Cause() const { return failures_.empty() ? std::string{} : failures_.back(); }

private:
    static void Note(int severity, int number, const char* message);

    std::vector<std::string> warnings_;
    std::vector<std::string> failures_;
};

}  // namespace kv_tr::gdal
