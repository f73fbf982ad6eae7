// One sequential text file.
#include "kv_tr/published/clsFile.h"

#include "kv_tr/files/open_text.h"
#include "kv_tr/published/component.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/text/code_page.h"
#include "kv_tr/text/replacing_file.h"

namespace kv_tr {

CodePage FilesCodePage() {
    return CurrentMlLanguage() == kVietnamese ? CodePage::kWindows1258 : CodePage::kWindows1250;
}

clsFile::clsFile() = default;

clsFile::~clsFile() {
    if (halfWritten_ || std::uncaught_exceptions() > exceptions_) output_.reset();
    try {
        CloseIt();
    } catch (...) {  // a destructor has nobody to tell
    }
}

bool clsFile::OpenIt(const std::string& sInpFileName, bool bInput) {
    if (open_) return true;
    name_ = sInpFileName;
    if (bInput) {
        OpenForReading(sInpFileName);
    } else {
        output_ = std::make_unique<ReplacingFile>(sInpFileName);
        if (!output_->IsOpen()) output_.reset();
    }
    halfWritten_ = false;
    open_ = lines_ != nullptr || output_ != nullptr;
    if (open_) {
        Register();
    } else {
        ReportOpenFailure(sInpFileName);
    }
    return true;
}

void clsFile::OpenForReading(const std::string& name) {
    auto stream = OpenText(name);
    if (!stream) return;
    stream_ = std::move(*stream);
    lines_ = std::make_unique<TextLines>(*stream_.rdbuf(), FilesCodePage());
}

void clsFile::Register() {
    registeredNr_ = TheComponent().WithRegisters([](Registers& registers) {
        std::int16_t number = 1;
        while (registers.fileNumbers.contains(number)) ++number;
        registers.fileNumbers.insert(number);
        return number;
    });
    fileNr_ = registeredNr_;
}

void clsFile::CloseIt() {
    if (!open_) return;
    open_ = false;
    TheComponent().WithRegisters(
        [this](Registers& registers) { registers.fileNumbers.erase(registeredNr_); });
    lines_.reset();
    stream_.close();
    const auto output = std::move(output_);
    if (output && (halfWritten_ || !output->Commit())) throw WriteFailure(name_);
}

bool clsFile::AtEnd() {
    if (!lines_) throw RuntimeError(ErrorNumber::kFileNotOpen, "File not open: " + name_);
    try {
        return lines_->AtEnd();
    } catch (const TextError& error) {
        throw ReadFailure(error);
    }
}

std::string clsFile::ReadLine() {
    if (AtEnd()) throw RuntimeError(ErrorNumber::kPastEnd, "Reading beyond the end: " + name_);
    return lines_->Next();
}

void clsFile::Write(std::string_view text) {
    if (!output_) throw RuntimeError(ErrorNumber::kFileNotOpen, "File not open: " + name_);
    halfWritten_ = true;  // until the conversion has succeeded
    output_->Write(ToCodePage(text, FilesCodePage()));
    halfWritten_ = false;
}

void clsFile::Print(std::string_view text) {
    Write(text);
    output_->Write("\r\n");
}

void WriteTextFile(const std::string& name, std::string_view text) {
    clsFile file;
    file.OpenIt(name);
    if (file.IsOpen()) file.Write(text);
    file.CloseIt();
}

}  // namespace kv_tr
