// Run-time errors: what reaches a host as an exception instead of a message box.
#pragma once

#include <stdexcept>
#include <string>

namespace kv_tr {

/// The numbers that RuntimeError carries, so that a host can tell the cases apart.
enum class ErrorNumber {
    kSubscript = 9,        ///< an index beyond an array
    kDivisionByZero = 11,  ///< a division without a guard met a zero
    kFileNotOpen = 52,     ///< reading, printing or an end-of-file test on a file that is not open
    kDeviceError = 57,     ///< the system failed while reading
    kWriteFailed = 61,     ///< the system took only part of what was written
    kPastEnd = 62,         ///< reading beyond the last line
    kLineTooLong = 63,     ///< a line too long to be one of a text file
    kObjectNotSet = 91,    ///< an object that has been let go
    kTextMissing = 326,    ///< no string table has the requested id
};

/// An error that the component does not handle itself; the host's own call made it happen.
class RuntimeError : public std::runtime_error {
public:
    RuntimeError(ErrorNumber number, const std::string& text)
        : std::runtime_error(text), number_(number) {}

    ErrorNumber Number() const { return number_; }

private:
    ErrorNumber number_;
};

}  // namespace kv_tr
