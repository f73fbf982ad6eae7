// Whether people are looking, and what they may be shown.
#include "cli/terminal.h"

#include <iostream>

#ifdef _WIN32
#include <io.h>
#define isatty _isatty
#else
#include <unistd.h>
#endif

#include "cli/console.h"
#include "cli/program.h"
#include "kv_tr/text/paths.h"

namespace kv_tr::cli {
namespace {

constexpr int kOutput = 1;
constexpr int kError = 2;
constexpr std::chrono::milliseconds kInterval{250};

}  // namespace

bool OutputIsTerminal() { return isatty(kOutput) != 0; }

bool OutputTakesColour() {
    return OutputIsTerminal() && ConsoleTakesColour() && Environment("NO_COLOR").empty();
}

Progress::Progress(std::uint64_t size, bool disturbs)
    : enabled_(isatty(kError) != 0 && !disturbs),
      size_(size),
      next_(std::chrono::steady_clock::now() + kInterval) {}

Progress::~Progress() {
    if (shown_) std::cerr << "\r\x1b[K" << std::flush;
}

bool Progress::IsDue() {
    if (!enabled_) return false;
    const auto now = std::chrono::steady_clock::now();
    if (now < next_) return false;
    next_ = now + kInterval;
    shown_ = true;
    return true;
}

void Progress::ShowShare(const std::string& job, double done) {
    if (!IsDue()) return;
    std::cerr << "\r\x1b[K" << job << ", " << static_cast<int>(100 * done) << " %" << std::flush;
}

void Progress::Show(std::uint64_t lines, std::uint64_t bytes) {
    if (!IsDue()) return;
    std::cerr << '\r' << Translated(Text::kLinesDone, {std::to_string(lines)});
    if (size_ != 0) std::cerr << ", " << 100 * bytes / size_ << " %";
    std::cerr << std::flush;
}

}  // namespace kv_tr::cli
