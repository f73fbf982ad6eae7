// The smaller classes for hosts that create them by name.
#include "kv_tr/com/classes.h"
#include "kv_tr/com/values.h"
#include "kv_tr/published/GCommonDialog.h"
#include "kv_tr/published/bookkeeping.h"
#include "kv_tr/published/clsFile.h"

namespace kv_tr::com {
namespace {

class File final : public Object<_clsFile> {
public:
    File() : Object(IID__clsFile, CLSID_clsFile) {}

    STDMETHODIMP OpenIt(BSTR name, VARIANT_BOOL input, VARIANT_BOOL* result) override {
        return Result(result, [&] { return core_.OpenIt(Utf8(name), FromCom(input)); });
    }
    STDMETHODIMP CloseIt() override {
        return Run([&] { core_.CloseIt(); });
    }
    STDMETHODIMP get_FileNr(short* value) override {
        return Result(value, [&] { return core_.FileNr(); });
    }
    STDMETHODIMP put_FileNr(short value) override {
        return Run([&] { core_.FileNr(value); });
    }
    STDMETHODIMP TearDown() override {
        return Run([&] { core_.TearDown(); });
    }
    STDMETHODIMP get_IsOpen(VARIANT_BOOL* value) override {
        return Result(value, [&] { return core_.IsOpen(); });
    }
    STDMETHODIMP get_AtEnd(VARIANT_BOOL* value) override {
        return Result(value, [&] { return core_.AtEnd(); });
    }
    STDMETHODIMP ReadLine(BSTR* result) override {
        return Result(result, [&] { return core_.ReadLine(); });
    }
    STDMETHODIMP Write(BSTR text) override {
        return Run([&] { core_.Write(Utf8(text)); });
    }
    STDMETHODIMP Print(BSTR text) override {
        return Run([&] { core_.Print(Utf8(text)); });
    }

private:
    kv_tr::clsFile core_;
};

class CommonDialog final : public Object<_GCommonDialog> {
public:
    CommonDialog() : Object(IID__GCommonDialog, CLSID_GCommonDialog) {}

    STDMETHODIMP VBGetOpenFileName(BSTR* name, BSTR* title, VARIANT_BOOL* mustExist,
                                   VARIANT_BOOL* multiSelect, VARIANT_BOOL* readOnly,
                                   VARIANT_BOOL* hideReadOnly, BSTR* filter, LONG* filterIndex,
                                   BSTR* folder, BSTR* dialogTitle, BSTR* extension, LONG* owner,
                                   LONG* flags, VARIANT_BOOL* result) override {
        return Result(result, [&] {
            auto arguments = Common(*name, *title, *filter, *filterIndex, *folder, *dialogTitle,
                                    *extension, *owner, *flags);
            arguments.FileMustExist = FromCom(*mustExist);
            arguments.MultiSelect = FromCom(*multiSelect);
            arguments.ReadOnly = FromCom(*readOnly);
            arguments.HideReadOnly = FromCom(*hideReadOnly);
            const bool chosen = core_.VBGetOpenFileName(arguments);
            GiveBack(arguments, name, title, filter, filterIndex, flags);
            *readOnly = ToCom(arguments.ReadOnly);
            return chosen;
        });
    }
    STDMETHODIMP VBGetSaveFileName(BSTR* name, BSTR* title, VARIANT_BOOL* overwritePrompt,
                                   BSTR* filter, LONG* filterIndex, BSTR* folder, BSTR* dialogTitle,
                                   BSTR* extension, LONG* owner, LONG* flags,
                                   VARIANT_BOOL* result) override {
        return Result(result, [&] {
            auto arguments = Common(*name, *title, *filter, *filterIndex, *folder, *dialogTitle,
                                    *extension, *owner, *flags);
            arguments.OverWritePrompt = FromCom(*overwritePrompt);
            const bool chosen = core_.VBGetSaveFileName(arguments);
            GiveBack(arguments, name, title, filter, filterIndex, flags);
            return chosen;
        });
    }
    STDMETHODIMP get_APIReturn(LONG* value) override {
        return Result(value, [&] { return core_.APIReturn(); });
    }
    STDMETHODIMP get_ExtendedError(LONG* value) override {
        return Result(value, [&] { return core_.ExtendedError(); });
    }

private:
    static FileDialogArguments Common(BSTR name, BSTR title, BSTR filter, LONG filterIndex,
                                      BSTR folder, BSTR dialogTitle, BSTR extension, LONG owner,
                                      LONG flags) {
        return {.Filename = Utf8(name),
                .FileTitle = Utf8(title),
                .Filter = Utf8(filter),
                .FilterIndex = filterIndex,
                .InitDir = Utf8(folder),
                .DlgTitle = Utf8(dialogTitle),
                .DefaultExt = Utf8(extension),
                .Owner = owner,
                .flags = flags};
    }
    static void GiveBack(const FileDialogArguments& arguments, BSTR* name, BSTR* title,
                         BSTR* filter, LONG* filterIndex, LONG* flags) {
        SetText(name, arguments.Filename);
        SetText(title, arguments.FileTitle);
        SetText(filter, arguments.Filter);
        *filterIndex = arguments.FilterIndex;
        *flags = arguments.flags;
    }

    kv_tr::GCommonDialog core_;
};

class ComponentObject final : public Object<_clsComponent> {
public:
    ComponentObject() : Object(IID__clsComponent, CLSID_clsComponent) {}

    STDMETHODIMP get_sAppTitle(BSTR* value) override {
        return Result(value, [&] { return core_.sAppTitle(); });
    }
    STDMETHODIMP put_sAppTitle(BSTR value) override {
        return Run([&] { core_.sAppTitle(Utf8(value)); });
    }
    STDMETHODIMP get_lDebugId(LONG* value) override {
        return Result(value, [&] { return core_.lDebugId(); });
    }
    STDMETHODIMP TearDown() override {
        return Run([&] { core_.TearDown(); });
    }

private:
    kv_tr::clsComponent core_;
};

class Debug final : public Object<_clsDebug> {
public:
    Debug() : Object(IID__clsDebug, CLSID_clsDebug) {}

    STDMETHODIMP get_colTraceObj(VARIANT* value) override {
        return Run([&] {
            const auto objects = core_.colTraceObj();
            SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(objects.size()), 0}, {2, 0}};
            OwnArray table(SafeArrayCreate(VT_VARIANT, 2, bounds));
            if (!table.Get()) throw std::bad_alloc();
            LONG row = 0;
            for (const auto& [id, name] : objects) {
                OwnVariant number;
                number->vt = VT_I4;
                number->lVal = id;
                OwnVariant text;
                text->vt = VT_BSTR;
                text->bstrVal = MakeBstr(name);
                LONG first[2] = {row, 0};
                LONG second[2] = {row++, 1};
                Check(SafeArrayPutElement(table.Get(), first, &*number));
                Check(SafeArrayPutElement(table.Get(), second, &*text));
            }
            value->parray = table.Release();
            value->vt = VT_ARRAY | VT_VARIANT;
        });
    }
    STDMETHODIMP get_sComponentName(BSTR* value) override {
        return Result(value, [&] { return core_.sComponentName(); });
    }

private:
    kv_tr::clsDebug core_;
};

class Rec final : public Object<_clsRec> {
public:
    Rec() : Object(IID__clsRec, CLSID_clsRec) {}
};

}  // namespace

IDispatch* NewFile() { return new File; }
IDispatch* NewCommonDialog() { return new CommonDialog; }
IDispatch* NewComponent() { return new ComponentObject; }
IDispatch* NewDebug() { return new Debug; }
IDispatch* NewRec() { return new Rec; }

}  // namespace kv_tr::com
