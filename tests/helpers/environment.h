// Variables of the environment, which POSIX and Windows set by different functions.
#pragma once

#include <cstdlib>

namespace kv_tr::test {

inline void SetVariable(const char* name, const char* value) {
#ifdef _WIN32
    _putenv_s(name, value);
#else
    setenv(name, value, 1);
#endif
}

inline void UnsetVariable(const char* name) {
#ifdef _WIN32
    _putenv_s(name, "");
#else
    unsetenv(name);
#endif
}

}  // namespace kv_tr::test
