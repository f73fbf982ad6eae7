// Preloaded into a program: lets the first allocation of one place in its code fail.
//
// Counted is what main allocates from the moment when a file KV_TR_FROM is opened.
// KV_TR_PLACES=FILE has the places that allocate written to a file, a number each;
// KV_TR_FAIL=NUMBER lets the first allocation of that place fail. A place is a stack of calls, so
// that one function that allocates for several callers is several places.
#include <dlfcn.h>
#include <execinfo.h>
#include <link.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string_view>

extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* __libc_calloc(std::size_t count, std::size_t size);
extern "C" void* __libc_realloc(void* old, std::size_t size);

namespace {

using Main = int (*)(int, char**, char**);

constexpr int kDeepest = 10;

Main realMain = nullptr;
const char* from = nullptr;  // the file that begins it; null before main and after it
std::atomic<bool> counting = false;
thread_local bool inside = false;  // nothing in here is counted
std::uint64_t failing = 0;
std::mutex mutex;  // of the places
std::array<std::uint64_t, 1 << 15> places{};
std::size_t placeCount = 0;

/// The libraries of the program when main begins.
struct Library {
    std::uintptr_t start = 0;
    std::uintptr_t end = 0;
};
std::array<Library, 64> libraries{};
std::size_t libraryCount = 0;

int NoteLibrary(dl_phdr_info* info, std::size_t, void*) {
    Library library{.start = info->dlpi_addr, .end = info->dlpi_addr};
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        const auto& part = info->dlpi_phdr[i];
        if (part.p_type == PT_LOAD)
            library.end = std::max(library.end, info->dlpi_addr + part.p_vaddr + part.p_memsz);
    }
    if (libraryCount < libraries.size()) libraries[libraryCount++] = library;
    return 0;
}

/// The same number in every run: addresses count from the start of their library.
std::uint64_t Place() {
    std::array<void*, kDeepest> frames{};
    const int count = backtrace(frames.data(), kDeepest);
    std::uint64_t place = 14695981039346656037U;
    for (int i = 2; i < count; ++i) {
        const auto address = reinterpret_cast<std::uintptr_t>(frames[static_cast<std::size_t>(i)]);
        for (std::size_t k = 0; k < libraryCount; ++k) {
            if (address < libraries[k].start || address >= libraries[k].end) continue;
            place = (place ^ (address - libraries[k].start) ^ k << 56) * 1099511628211U;
        }
    }
    return place;
}

/// Whether this is the first allocation of its place, and that is to fail.
bool Fails() {
    if (!counting || inside) return false;
    inside = true;
    const std::uint64_t place = Place();
    const std::scoped_lock lock(mutex);
    std::size_t known = 0;
    while (known < placeCount && places[known] != place) ++known;
    const bool isNew = known == placeCount && placeCount < places.size();
    if (isNew) places[placeCount++] = place;
    inside = false;
    if (isNew && place == failing) errno = ENOMEM;
    return isNew && place == failing;
}

int CountedMain(int count, char** arguments, char** environment) {
    std::array<void*, 1> frame{};
    backtrace(frame.data(), 1);  // allocates when it is called for the first time
    dl_iterate_phdr(NoteLibrary, nullptr);
    if (const char* number = std::getenv("KV_TR_FAIL"))
        failing = std::strtoull(number, nullptr, 10);
    from = std::getenv("KV_TR_FROM");
    const int code = realMain(count, arguments, environment);
    from = nullptr;
    counting = false;
    if (const char* name = std::getenv("KV_TR_PLACES")) {
        std::FILE* file = std::fopen(name, "w");
        for (std::size_t i = 0; file != nullptr && i < placeCount; ++i)
            std::fprintf(file, "%llu\n", static_cast<unsigned long long>(places[i]));
        if (file != nullptr) std::fclose(file);
    }
    return code;
}

std::FILE* Opened(const char* function, const char* name, const char* mode) {
    if (from != nullptr && std::string_view(name).ends_with(from)) counting = true;
    return reinterpret_cast<decltype(&std::fopen)>(dlsym(RTLD_NEXT, function))(name, mode);
}

}  // namespace

extern "C" {

std::FILE* fopen(const char* name, const char* mode) { return Opened("fopen", name, mode); }
std::FILE* fopen64(const char* name, const char* mode) { return Opened("fopen64", name, mode); }

void* malloc(std::size_t size) { return Fails() ? nullptr : __libc_malloc(size); }
void* calloc(std::size_t count, std::size_t size) {
    return Fails() ? nullptr : __libc_calloc(count, size);
}
void* realloc(void* old, std::size_t size) { return Fails() ? nullptr : __libc_realloc(old, size); }

int __libc_start_main(Main main, int count, char** arguments, void (*init)(), void (*fini)(),
                      void (*loaderFini)(), void* stackEnd) {
    realMain = main;
    const auto next =
        reinterpret_cast<decltype(&__libc_start_main)>(dlsym(RTLD_NEXT, "__libc_start_main"));
    return next(CountedMain, count, arguments, init, fini, loaderFini, stackEnd);
}
}
