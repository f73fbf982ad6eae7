// The surroundings of the component in a host of Windows.
#include "kv_tr/com/windows_platform.h"

#include "kv_tr/com/bstr.h"
#include "kv_tr/published/console_platform.h"
#ifdef KV_TR_QT
#include "kv_tr/com/qt_dialogs.h"
#endif

#include <commdlg.h>

#include <algorithm>
#include <cwchar>
#include <utility>

namespace kv_tr::com {
namespace {

/// Whether somebody could see a window; the window station of a service is hidden.
bool HasVisibleDesktop() {
    USEROBJECTFLAGS flags{};
    return GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags,
                                     nullptr) &&
           (flags.dwFlags & WSF_VISIBLE) != 0;
}

UINT StyleOf(const Message& message) {
    UINT style = MB_TASKMODAL;
    if (message.icon == Icon::kExclamation) style |= MB_ICONEXCLAMATION;
    if (message.icon == Icon::kInformation) style |= MB_ICONINFORMATION;
    if (message.buttons == Buttons::kYesNo) style |= MB_YESNO;
    if (message.buttons == Buttons::kYesNoCancel) style |= MB_YESNOCANCEL;
    if (message.defaultAnswer == Answer::kNo) style |= MB_DEFBUTTON2;
    if (message.defaultAnswer == Answer::kCancel) style |= MB_DEFBUTTON3;
    return style;
}

class WindowsMessages : public MessageBox {
public:
    explicit WindowsMessages(std::unique_ptr<MessageBox> unseen) : unseen_(std::move(unseen)) {}

    Answer Show(const Message& message) override {
        const std::wstring title = message.title.empty() ? L"KV_Tr" : Wide(message.title);
        const int button = HasVisibleDesktop()
                               ? MessageBoxW(GetActiveWindow(), Wide(message.text).c_str(),
                                             title.c_str(), StyleOf(message))
                               : 0;
        switch (button) {
            case IDOK: return Answer::kOk;
            case IDYES: return Answer::kYes;
            case IDNO: return Answer::kNo;
            case IDCANCEL: return Answer::kCancel;
            default: return unseen_->Show(message);  // 0 from Windows, -1 from Wine
        }
    }

private:
    std::unique_ptr<MessageBox> unseen_;
};

/// Descriptions and patterns in turn, each with a zero behind it, and one more at the end.
std::wstring FilterText(const std::vector<FileFilter>& filters) {
    std::wstring text;
    for (const FileFilter& filter : filters) {
        text += Wide(filter.description) + L'\0' + Wide(filter.pattern) + L'\0';
    }
    return text + L'\0';
}

const wchar_t* OrNone(const std::wstring& text) { return text.empty() ? nullptr : text.c_str(); }

class WindowsFiles : public FileChooser {
public:
    std::optional<FileChoice> ChooseToOpen(const FileRequest& request) override {
        return Choose(request, GetOpenFileNameW);
    }
    std::optional<FileChoice> ChooseToSave(const FileRequest& request) override {
        return Choose(request, GetSaveFileNameW);
    }

private:
    static std::optional<FileChoice> Choose(const FileRequest& request,
                                            BOOL(WINAPI* show)(OPENFILENAMEW*)) {
        const std::wstring filter = FilterText(request.filters);
        const std::wstring title = Wide(request.title);
        const std::wstring folder = Wide(request.initialFolder);
        const std::wstring extension = Wide(request.defaultExtension);
        std::wstring name = Wide(request.fileName);
        name.resize(std::max<std::size_t>(32768, name.size() + 1));

        OPENFILENAMEW dialog{};
        dialog.lStructSize = sizeof dialog;
        if (request.owner != -1) {
            dialog.hwndOwner = reinterpret_cast<HWND>(static_cast<INT_PTR>(request.owner));
        }
        dialog.lpstrFilter = filter.c_str();
        dialog.nFilterIndex = static_cast<DWORD>(request.filterIndex);
        dialog.lpstrFile = name.data();
        dialog.nMaxFile = static_cast<DWORD>(name.size());
        dialog.lpstrInitialDir = OrNone(folder);
        dialog.lpstrTitle = OrNone(title);
        dialog.lpstrDefExt = OrNone(extension);
        // The current folder is the host's own.
        dialog.Flags = static_cast<DWORD>(request.flags) | OFN_NOCHANGEDIR;
        if (!show(&dialog)) return std::nullopt;
        return FileChoice{.path = kv_tr::Utf8(name.c_str()),
                          .filterIndex = static_cast<std::int32_t>(dialog.nFilterIndex),
                          .flags = static_cast<std::int32_t>(dialog.Flags)};
    }
};

}  // namespace

Platform WindowsPlatform() {
    Platform platform = ConsolePlatform(kHungarian);
    platform.messages = std::make_unique<WindowsMessages>(std::move(platform.messages));
    platform.files = std::make_unique<WindowsFiles>();
#ifdef KV_TR_QT
    UseQtDialogs(platform);
#endif
    return platform;
}

}  // namespace kv_tr::com
