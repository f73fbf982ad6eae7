// What work on whole data sets has in common: how far it is, its end, and its errors.
#pragma once

#include <array>
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "kv_tr/text/texts.h"

namespace kv_tr::gdal {

/// Is told now and then which share of the work is done, from 0 to 1; false ends the work, which
/// then throws Cancelled and leaves nothing behind.
using Progress = std::function<bool(double done)>;

/// The work was ended from outside.
struct Cancelled : std::exception {
    const char* what() const noexcept override { return "cancelled"; }
};

/// Tells how far the work is, where somebody wants to know.
inline void Tell(const Progress& progress, double done) {
    if (progress && !progress(done)) throw Cancelled();
}

/// For GDAL's functions that take a progress function and, as its argument, a pointer to a
/// Progress, which may be empty.
inline int TellOfGdal(double done, const char* /*message*/, void* progress) {
    const auto& tell = *static_cast<const Progress*>(progress);
    return !tell || tell(done) ? 1 : 0;
}

/// Why a data set was not made, as a text for users and what stands in its places.
class DataSetError : public std::exception {
public:
    using Values = std::array<std::string, 4>;

    /// The reason, if there is one, stands in the place {3}.
    DataSetError(Text text, Values values, std::optional<Text> reason = std::nullopt)
        : text_(text),
          values_(std::move(values)),
          reason_(reason),
          english_(In(TextsIn(kEnglish))) {}

    Text Id() const { return text_; }
    std::string In(const TextLookup& texts) const {
        const auto& [first, second, third, fourth] = values_;
        return FillPlaces(texts(text_), {first, second, third, reason_ ? texts(*reason_) : fourth});
    }
    const char* what() const noexcept override { return english_.c_str(); }

private:
    Text text_;
    Values values_;
    std::optional<Text> reason_;
    std::string english_;
};

}  // namespace kv_tr::gdal
