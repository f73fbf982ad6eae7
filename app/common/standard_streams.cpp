// Standard streams that the caller of a program has closed.
#include "common/standard_streams.h"

#ifndef _WIN32
#include <fcntl.h>

#include <cerrno>
#endif

namespace kv_tr::app {

#ifdef _WIN32
bool OpenMissingStandardStreams() { return true; }
#else
bool OpenMissingStandardStreams() {
    constexpr int kWrongWays[] = {O_WRONLY, O_RDONLY, O_RDONLY};  // input, output, errors
    for (int stream = 0; stream < 3; ++stream) {
        if (fcntl(stream, F_GETFD) != -1 || errno != EBADF) continue;
        if (open("/dev/null", kWrongWays[stream]) != stream) return false;
    }
    return true;
}
#endif

}  // namespace kv_tr::app
