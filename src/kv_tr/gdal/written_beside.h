// A data set of one or several files that appears when all of it is written.
#pragma once

#include <cstdio>
#include <filesystem>
#include <vector>

namespace kv_tr::gdal {

/// A place to write a data set in: a folder beside the target, from which Commit moves all files
/// and folders to where they belong. Without Commit nothing remains of them. A writer that was
/// killed leaves a folder `.kv_tr-NUMBER.tmp`, which the next one there removes.
class WrittenBeside {
public:
    /// Makes the folder, and those above it that there are not yet. DataSetError when that is
    /// impossible, when the target exists and is not to be replaced, and when it cannot be.
    WrittenBeside(const std::filesystem::path& target, bool replaces);
    ~WrittenBeside();
    WrittenBeside(const WrittenBeside&) = delete;
    WrittenBeside& operator=(const WrittenBeside&) = delete;

    /// Where to write: has the name of the target. Other files of the data set go beside it.
    const std::filesystem::path& Path() const { return path_; }
    /// The file or folder that Commit makes.
    const std::filesystem::path& Target() const { return target_; }
    /// Files of the older data set at the target, which Commit removes unless they are replaced.
    void Supersede(std::vector<std::filesystem::path> members) { old_ = std::move(members); }

    /// Has Commit put what is in a folder into the one at the target, rather than replace that.
    void MergeFolders() { mergesFolders_ = true; }

    /// Moves everything to the target. DataSetError when that fails or a file is in the way that is
    /// not to be replaced; what was there before is there again then.
    void Commit();

private:
    struct Move {
        std::filesystem::path from;
        std::filesystem::path to;
    };
    void MakeFolder();
    std::vector<Move> Moves() const;

    std::filesystem::path target_;
    bool replaces_;
    bool mergesFolders_ = false;
    std::filesystem::path firstMade_;  // of the folders above
    std::filesystem::path folder_;
    std::filesystem::path path_;
    std::FILE* lock_ = nullptr;
    std::vector<std::filesystem::path> old_;
};

}  // namespace kv_tr::gdal
