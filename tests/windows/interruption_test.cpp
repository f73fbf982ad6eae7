// What the command line leaves behind when the user presses Ctrl+Break on a console of Windows.
#include <gtest/gtest.h>

#include <bit>
#include <chrono>
#include <thread>

#include "helpers/files.h"
#include "kv_tr/text/wide_text.h"
#include "kv_tr/text/windows_api.h"

namespace kv_tr::test {
namespace {

namespace fs = std::filesystem;

/// The command line, reading what is written to it.
class Running {
public:
    Running(const std::string& arguments, const std::string& folder) {
        SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        HANDLE reading = nullptr;
        CreatePipe(&reading, &writing_, &inherited, 0);
        SetHandleInformation(writing_, HANDLE_FLAG_INHERIT, 0);
        STARTUPINFOW start{};
        start.cb = sizeof start;
        start.dwFlags = STARTF_USESTDHANDLES;
        start.hStdInput = reading;
        start.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
        start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
        std::wstring line = Wide("\"" KV_TR_PROGRAM "\" " + arguments);
        CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                       Wide(folder).c_str(), &start, &process_);
        CloseHandle(reading);
    }
    ~Running() {
        TerminateProcess(process_.hProcess, 1);
        CloseHandle(process_.hProcess);
        CloseHandle(process_.hThread);
        CloseHandle(writing_);
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    void Write(const std::string& text) const {
        DWORD written = 0;
        ::WriteFile(writing_, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    }
    /// Does what the console does: starts the routine that calls the handlers.
    bool Interrupt() const {
        const auto routine = std::bit_cast<LPTHREAD_START_ROUTINE>(
            GetProcAddress(GetModuleHandleW(L"kernelbase"), "CtrlRoutine"));
        const HANDLE thread =
            CreateRemoteThread(process_.hProcess, nullptr, 0, routine,
                               reinterpret_cast<void*>(CTRL_BREAK_EVENT), 0, nullptr);
        return thread != nullptr && CloseHandle(thread) != 0;
    }
    bool Ends() const { return WaitForSingleObject(process_.hProcess, 20000) == WAIT_OBJECT_0; }

private:
    HANDLE writing_ = nullptr;
    PROCESS_INFORMATION process_{};
};

TEST(Interruption, LeavesTheOldFileAndNothingElse) {
    const TemporaryFolder folder;
    WriteFile(folder.File("shift"), "A 0 0 100 200\nB 10 0 110 200\nC 0 10 100 210\n");
    WriteFile(folder.File("old"), "old");
    const auto count = [&folder] {
        return std::distance(fs::directory_iterator(PathOf(folder.File(""))), {});
    };
    const Running program("transform --points shift --type affine --output old", folder.File(""));
    program.Write("A 1 2\n");
    for (int i = 0; i < 500 && count() < 3; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ASSERT_EQ(count(), 3) << "the work has begun";
    ASSERT_TRUE(program.Interrupt());
    ASSERT_TRUE(program.Ends());
    EXPECT_EQ(count(), 2);
    EXPECT_EQ(ReadFile(folder.File("old")), "old");
}

}  // namespace
}  // namespace kv_tr::test
