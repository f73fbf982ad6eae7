// A text that is a file for a moment, for readers that want a file.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kv_tr {

/// A file with this text in a working folder of its own, to which nobody but the user has access.
/// File and folder go away with the object.
///
/// The file is UTF-8 with a mark, so that no letter of the text is lost. Throws RuntimeError
/// kWriteFailed when it cannot be written.
class TemporaryText {
public:
    TemporaryText(const std::string& fileName, std::string_view text);
    ~TemporaryText();
    TemporaryText(const TemporaryText&) = delete;
    TemporaryText& operator=(const TemporaryText&) = delete;

    std::string Path() const { return path_.string(); }

private:
    std::filesystem::path path_;
};

}  // namespace kv_tr
