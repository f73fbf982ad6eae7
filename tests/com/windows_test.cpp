// Message boxes and file choosers of Windows, answered by a second thread.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "com/com_client.h"

using namespace com_client;

namespace {

/// Waits for dialogs, looks at each and answers it, as a user would.
class User {
public:
    /// Answers that many dialogs with the button.
    User(int dialogs, WORD button)
        : thread_([this, dialogs, button] { Answer(dialogs, button); }) {}
    ~User() { Finish(); }
    User(const User&) = delete;
    User& operator=(const User&) = delete;

    struct Seen {
        std::wstring title{};
        std::vector<std::wstring> texts{};
        HWND owner = nullptr;
    };
    /// What there was to see.
    const std::vector<Seen>& Finish() {
        if (thread_.joinable()) thread_.join();
        return seen_;
    }

private:
    static std::wstring TextOf(HWND window) {
        wchar_t text[1000] = {};
        GetWindowTextW(window, text, 1000);
        return text;
    }
    static BOOL CALLBACK AddText(HWND child, LPARAM texts) {
        reinterpret_cast<std::vector<std::wstring>*>(texts)->push_back(TextOf(child));
        return TRUE;
    }
    void Answer(int dialogs, WORD button) {
        HWND last = nullptr;
        for (int wait = 0; wait < 200 && dialogs > 0; ++wait) {
            Sleep(50);
            const HWND dialog = FindWindowW(L"#32770", nullptr);
            if (!dialog || dialog == last || !IsWindowVisible(dialog)) continue;
            Seen seen{.title = TextOf(dialog), .owner = GetWindow(dialog, GW_OWNER)};
            EnumChildWindows(dialog, AddText, reinterpret_cast<LPARAM>(&seen.texts));
            seen_.push_back(seen);
            last = dialog;
            --dialogs;
            PostMessageW(dialog, WM_COMMAND, button, 0);
        }
    }

    std::vector<Seen> seen_{};
    std::thread thread_;
};

bool Shows(const User::Seen& seen, const std::wstring& text) {
    for (const std::wstring& each : seen.texts) {
        if (each.find(text) != each.npos) return true;
    }
    return false;
}

/// A file that can be chosen, and a window that owns dialogs.
class Windows : public testing::Test {
protected:
    Windows() { std::ofstream(path_) << "x"; }
    ~Windows() override {
        DestroyWindow(owner_);
        std::filesystem::remove(path_);
    }
    LONG Owner() const { return static_cast<LONG>(reinterpret_cast<INT_PTR>(owner_)); }

    const std::filesystem::path path_ =
        std::filesystem::temp_directory_path() / L"kv_tr_chosen.dat";
    const HWND owner_ = CreateWindowExW(0, L"STATIC", L"host", WS_POPUP | WS_VISIBLE, 0, 0, 300,
                                        200, nullptr, nullptr, nullptr, nullptr);
};

}  // namespace

TEST_F(Windows, OfMessagesShowTheirTexts) {
    const auto engine = NewEngine();
    Bstr missing((path_.parent_path() / L"no such file.dat").wstring());
    VARIANT_BOOL done = VARIANT_TRUE;
    User user(2, IDOK);
    EXPECT_EQ(engine->bLoadXYsFromFile(&missing, VARIANT_FALSE, &done), S_OK);
    EXPECT_EQ(done, VARIANT_FALSE);
    const auto& seen = user.Finish();
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[0].title, L"KV_Tr");
    EXPECT_TRUE(Shows(seen[0], L"Fájl megnyitási hiba: "));
    EXPECT_TRUE(Shows(seen[0], L"no such file.dat"));
    EXPECT_TRUE(Shows(seen[1], L"Hibás fájl formátum!"));
}

TEST_F(Windows, ForFilesGiveTheChosenOne) {
    const auto dialog = Create<_GCommonDialog>(L"KV_Tr.GCommonDialog", IID__GCommonDialog);
    ASSERT_TRUE(dialog);
    Bstr name(path_.wstring()), title, filter(L"Points|*.dat|All|*.*"), folder, caption(L"Which?"),
        extension;
    VARIANT_BOOL mustExist = VARIANT_TRUE, no = VARIANT_FALSE, readOnly = VARIANT_FALSE,
                 chosen = VARIANT_FALSE;
    LONG index = 2, owner = Owner(), flags = 0;
    User user(1, IDOK);
    EXPECT_EQ(
        dialog->VBGetOpenFileName(&name, &title, &mustExist, &no, &readOnly, &no, &filter, &index,
                                  &folder, &caption, &extension, &owner, &flags, &chosen),
        S_OK);
    const auto& seen = user.Finish();
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].title, L"Which?");
    EXPECT_EQ(seen[0].owner, owner_);
    EXPECT_EQ(chosen, VARIANT_TRUE);
    EXPECT_EQ(name.Text(), path_.wstring());
    EXPECT_EQ(title.Text(), L"kv_tr_chosen.dat");
    EXPECT_EQ(index, 2);
    LONG answer = 0;
    dialog->get_APIReturn(&answer);
    EXPECT_EQ(answer, 1);
}

TEST_F(Windows, ForFilesEmptyTheArgumentsWhenCancelled) {
    const auto dialog = Create<_GCommonDialog>(L"KV_Tr.GCommonDialog", IID__GCommonDialog);
    Value name;
    name->vt = VT_BSTR;
    name->bstrVal = SysAllocString(path_.wstring().c_str());
    User user(1, IDCANCEL);
    const Outcome outcome =
        CallMethod(dialog.Get(), L"VBGetSaveFileName", {&*name}, {{L"DlgTitle", L"Save what?"}});
    const auto& seen = user.Finish();
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].title, L"Save what?");
    EXPECT_EQ(seen[0].owner, nullptr);
    EXPECT_EQ(outcome.code, S_OK);
    EXPECT_EQ(outcome.result->boolVal, VARIANT_FALSE);
    EXPECT_EQ(name.Text(), L"");
}

TEST_F(Windows, ForPointsTellTheFolder) {
    const auto engine = NewEngine();
    Bstr name(path_.wstring()), folder;
    LONG owner = Owner();
    VARIANT_BOOL chosen = VARIANT_FALSE;
    User user(1, IDOK);
    EXPECT_EQ(engine->bChooseFile4LoadXYs4Tr(&name, &folder, &owner, &chosen), S_OK);
    const auto& seen = user.Finish();
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].owner, owner_);
    EXPECT_EQ(chosen, VARIANT_TRUE);
    EXPECT_EQ(name.Text(), path_.wstring());
}
