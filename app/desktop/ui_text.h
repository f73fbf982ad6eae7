// Texts of the component as Qt shows them.
#pragma once

#include <QString>

#include "kv_tr/published/ml_strings.h"

namespace kv_tr::desktop {

inline QString UiText(Text text) { return QString::fromStdString(Translated(text)); }

}  // namespace kv_tr::desktop
