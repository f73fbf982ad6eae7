// One sequential text file.
#include "kv_tr/published/clsFile.h"

#include <filesystem>

#include "kv_tr/published/component.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/text/code_page.h"

namespace kv_tr {
namespace {

CodePage FilesCodePage() {
    return CurrentMlLanguage() == kVietnamese ? CodePage::kWindows1258 : CodePage::kWindows1250;
}

}  // namespace

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
    open_ = reader_ != nullptr || output_ != nullptr;
    if (open_) {
        Register();
    } else {
        ReportOpenFailure(sInpFileName);
    }
    return true;
}

void clsFile::OpenForReading(const std::string& name) {
    std::error_code error;
    if (std::filesystem::is_directory(name, error)) return;  // would open, but not read
    stream_.open(name, std::ios::binary);
    if (!stream_.is_open()) return;
    try {
        auto reader = std::make_unique<LineReader>(*stream_.rdbuf());
        utf8_ = reader->SkipUtf8Mark() ? std::optional(true) : std::nullopt;
        reader_ = std::move(reader);
    } catch (const TextError&) {  // opens, but cannot be read
        stream_.close();
    }
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
    reader_.reset();
    stream_.close();
    const auto output = std::move(output_);
    if (output && (halfWritten_ || !output->Commit())) throw WriteFailure(name_);
}

bool clsFile::AtEnd() {
    if (!reader_) throw RuntimeError(ErrorNumber::kFileNotOpen, "File not open: " + name_);
    try {
        return reader_->AtEnd();
    } catch (const TextError& error) {
        throw ReadFailure(error);
    }
}

std::string clsFile::ReadLine() {
    if (AtEnd()) throw RuntimeError(ErrorNumber::kPastEnd, "Reading beyond the end: " + name_);
    const std::string_view line = reader_->Next();
    if (IsAscii(line)) return std::string(line);
    if (!utf8_) utf8_ = IsUtf8(line) && IsUtf8(reader_->Ahead());
    return *utf8_ ? ValidUtf8(line) : FromCodePage(line, FilesCodePage());
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
