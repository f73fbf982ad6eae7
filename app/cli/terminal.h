// Whether people are looking, and what they may be shown.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace kv_tr::cli {

bool OutputIsTerminal();

/// Whether the standard output takes colours: a terminal whose user has not set NO_COLOR.
bool OutputTakesColour();

/// A line on the standard error stream, if that is a terminal, that tells how far a long job is.
class Progress {
public:
    /// The size of the job in bytes; 0 when it is not known. Not shown where it would disturb.
    Progress(std::uint64_t size, bool disturbs);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Call it as often as you like; it writes a few times a second at most.
    void Show(std::uint64_t lines, std::uint64_t bytes);
    /// The same for a job of which the share that is done is known, from 0 to 1.
    void ShowShare(const std::string& job, double done);

private:
    bool IsDue();

    bool enabled_;
    bool shown_ = false;
    std::uint64_t size_;
    std::chrono::steady_clock::time_point next_;
};

}  // namespace kv_tr::cli
