// The version of the component, as CMakeLists.txt states it.
#pragma once

namespace kv_tr {

/// "1.2.3".
const char* Version();

}  // namespace kv_tr
