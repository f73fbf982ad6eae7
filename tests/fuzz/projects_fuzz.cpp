// Project files of the workbench: nothing is guessed, and what is read is saved as it was.
#include "fuzz/fuzz.h"
#include "workbench/project_file.h"

namespace kv_tr::test {
namespace {

using workbench::Document;

std::string Saved(workbench::Content content) {
    Document document;
    document.Replace(std::move(content));
    return ProjectText(document);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    workbench::ReadProject first = workbench::ProjectOf(text);
    if (!first.Complete()) {
        Require(first.problem.line <= LineCount(text) + 1, "the line of the problem exists");
        Require(!Complaint(first.problem, "name").empty(), "a problem has words");
        return 0;
    }
    const std::string saved = Saved(std::move(first.content));
    workbench::ReadProject second = workbench::ProjectOf(saved);
    Require(second.Complete(), "what is saved can be opened");
    Require(Saved(std::move(second.content)) == saved, "what is opened is saved as it was");
    return 0;
}

}  // namespace kv_tr::test
