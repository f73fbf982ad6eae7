// Projects as files: JSON that keeps every digit.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "workbench/document.h"

namespace kv_tr::workbench {

/// What is wrong with a project file.
struct ProjectProblem {
    enum class Kind {
        kNone,
        kNotOpened,
        kTooLarge,    ///< more bytes than kMostBytes
        kNoJson,      ///< the text breaks the rules of JSON
        kNoProject,   ///< JSON, but not of a project
        kNewer,       ///< `member` is the version, which this program does not know
        kUnknown,     ///< the member is none of a project
        kRepeated,    ///< the member is there twice
        kMissing,     ///< the member is missing
        kUnsuitable,  ///< the member has another value than it may have
    };
    Kind kind = Kind::kNone;
    std::size_t line = 0;    ///< from 1; 0 for the file as a whole
    std::size_t column = 0;  ///< in bytes, from 1
    std::string member{};    ///< "points[3].source"
};

/// A project out of a file, or what is wrong with it.
struct ReadProject {
    Content content{};
    ProjectProblem problem{};

    bool Complete() const { return problem.kind == ProjectProblem::Kind::kNone; }
};

inline constexpr std::size_t kMostBytes = std::size_t{1} << 30;

/// The project as text, UTF-8 in lines that end with LF. The same project gives the same text.
std::string ProjectText(const Document& document);

/// Reads what ProjectText writes. Nothing is guessed: a member that is not known is a problem,
/// since it would be lost by saving.
ReadProject ProjectOf(std::string_view text);
ReadProject ProjectOfFile(const std::string& fileName);

/// Saves under a name, so that an older file is replaced only by a whole one; what went wrong in
/// words of the current language, or nothing.
std::string SaveProject(const Document& document, const std::string& fileName);

/// What is wrong, in words of the current language.
std::string Complaint(const ProjectProblem& problem, const std::string& fileName);

}  // namespace kv_tr::workbench
