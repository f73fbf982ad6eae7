// The day that a report bears.
#include "kv_tr/published/day_of_report.h"

#include <cstdlib>
#include <ctime>

#include "kv_tr/text/number_text.h"

namespace kv_tr {
namespace {

/// A time in UTC or in the user's time zone. The functions of the C++ library have one result for
/// all threads.
std::tm PartsOf(std::time_t time, bool isUtc) {
    std::tm parts{};
#ifdef _WIN32
    isUtc ? gmtime_s(&parts, &time) : localtime_s(&parts, &time);
#else
    isUtc ? gmtime_r(&time, &parts) : localtime_r(&time, &parts);
#endif
    return parts;
}

}  // namespace

std::optional<std::string> DayOfReport() {
    std::time_t now = std::time(nullptr);
    const char* const epoch = std::getenv("SOURCE_DATE_EPOCH");
    const bool isSet = epoch != nullptr && *epoch != '\0';
    if (isSet) {
        constexpr double kEndOf9999 = 253402300799;
        const auto seconds = ParseNumber(epoch);
        if (!seconds || *seconds < 0 || *seconds > kEndOf9999) return std::nullopt;
        now = static_cast<std::time_t>(*seconds);
    }
    const std::tm day = PartsOf(now, isSet);
    char text[11];
    std::strftime(text, sizeof text, "%Y-%m-%d", &day);
    return text;
}

}  // namespace kv_tr
