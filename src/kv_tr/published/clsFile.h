// One sequential text file.
#pragma once

#include <cstdint>
#include <exception>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

#include "kv_tr/files/text_lines.h"
#include "kv_tr/published/bool16.h"

namespace kv_tr {

class ReplacingFile;

/// A text file that is read or written from start to end, line by line.
///
/// Texts are UTF-8 inside the program and single-byte in the file: windows-1258 while the current
/// language is Vietnamese, windows-1250 otherwise. A file is read as UTF-8 when it begins with a
/// UTF-8 mark, or when its first part with letters beyond ASCII is valid UTF-8. Lines are written
/// with CR LF and read with CR LF, LF or CR; bytes 26 at the end of a file are not read.
class clsFile {
public:
    clsFile();
    /// Closes the file; what could not be written is lost silently. A file that an exception
    /// leaves half written is discarded, and an older one of its name stays.
    ~clsFile();
    clsFile(const clsFile&) = delete;
    clsFile& operator=(const clsFile&) = delete;

    /// Opens a file for reading (bInput) or for writing; a file written takes the place of an
    /// older one when it is closed. Does nothing while a file is open. A failure is shown to the
    /// user (text 70). The result is true in every case, deliberately: ask IsOpen().
    bool OpenIt(const std::string& sInpFileName, bool bInput = false);

    /// Closes the file if one is open. Throws RuntimeError kWriteFailed when not everything could
    /// be written; an older file of that name is then kept.
    void CloseIt();

    /// The number of the open file, unique among the open files of the component.
    std::int16_t FileNr() const { return fileNr_; }
    void FileNr(std::int16_t number) { fileNr_ = number; }

    /// Closes the file and lets everything go.
    void TearDown() { CloseIt(); }

    bool IsOpen() const { return open_; }

    /// Whether there is no further line. On a file that is not open for reading this is
    /// RuntimeError kFileNotOpen, as it is for ReadLine.
    bool AtEnd();

    /// The next line, UTF-8, without its end. Throws RuntimeError kPastEnd behind the last line.
    std::string ReadLine();

    /// The lines that are left, for readers of the core. The file must be open for reading.
    TextLines& Lines() { return *lines_; }

    /// Writes the text, Print with a line end behind it. Throw RuntimeError kFileNotOpen when no
    /// file is open for writing.
    void Write(std::string_view text);
    void Print(std::string_view text);

private:
    void OpenForReading(const std::string& name);
    void Register();
    void Release();

    Bool16 open_;
    std::int16_t fileNr_ = 0;
    std::int16_t registeredNr_ = 0;  // the number taken from the component
    std::string name_;
    std::ifstream stream_;
    std::unique_ptr<TextLines> lines_;
    bool halfWritten_ = false;  // a part of what was to be written is missing
    int exceptions_ = std::uncaught_exceptions();
    std::unique_ptr<ReplacingFile> output_;
};

/// The code page of the component's files: windows-1258 while the current language is Vietnamese,
/// windows-1250 otherwise.
CodePage FilesCodePage();

/// Writes a file that holds just this text. A file that does not open is shown to the user; what
/// cannot be written completely is RuntimeError kWriteFailed.
void WriteTextFile(const std::string& name, std::string_view text);

}  // namespace kv_tr
