// Points that have no image under an exact inverse, and why.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "kv_tr/model/inverse.h"

namespace kv_tr::app {

/// How many points have no image under an inverse, by the reason.
using LostPoints = std::array<std::uint64_t, 5>;

/// The reason as a sentence without its end.
std::string ReasonText(NoSource trouble);

}  // namespace kv_tr::app
