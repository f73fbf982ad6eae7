// What becomes of a half-written file when the user interrupts the program.
#pragma once

#include <filesystem>

namespace kv_tr::cli {

/// While it lives, Ctrl+C, a hang-up and a request to end remove this file before they end the
/// program. There may be one at a time.
class RemovedWhenInterrupted {
public:
    explicit RemovedWhenInterrupted(const std::filesystem::path& file);
    ~RemovedWhenInterrupted();
    RemovedWhenInterrupted(const RemovedWhenInterrupted&) = delete;
    RemovedWhenInterrupted& operator=(const RemovedWhenInterrupted&) = delete;
};

}  // namespace kv_tr::cli
