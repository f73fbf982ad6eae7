// The version of the component: the one number of CMakeLists.txt.
#include "kv_tr/text/version.h"

namespace kv_tr {

const char* Version() { return KV_TR_VERSION; }

}  // namespace kv_tr
