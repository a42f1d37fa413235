// A folder of our own for temporary files.
#pragma once

#include <RVUtils/RVString.h>

#include <cstdint>
#include <filesystem>
#include <string>

namespace attachments {

// A private folder below the user's one for temporary files. While it lives the library makes its
// temporary files in it; it goes with everything in it, however the program ends its work.
//
// A file reference is not more than a text, which a document could bring along to have any file of
// the user's decoded and deleted. So references are followed only into this folder, where nothing
// stands but what a load has put there.
class WorkFolder {
public:
    WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    ~WorkFolder();

    // Where it is.
    std::string Path() const;
    // A path in it that is not taken.
    std::string New_Path();
    // Whether a value refers to a file that a load has put here.
    [[nodiscard]] bool Holds(const RVString& value) const;
    // What everything in it takes, in bytes.
    std::uint64_t Size() const;

private:
    std::filesystem::path m_Path;
    std::string m_Prefix;  // with which every reference into it begins
    unsigned m_Count = 0;
};

// The path of a reference.
[[nodiscard]] std::string Path_Of_Reference(const RVString& reference);

}  // namespace attachments
