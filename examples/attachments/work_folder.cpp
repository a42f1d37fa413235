#include "work_folder.h"

#include <RVUtils/paths.h>
#include <RVUtils/winapi.h>

#include <cstdio>
#include <random>
#include <string_view>

#include "failure.h"
#include "names.h"
#include "system.h"

namespace attachments {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kReference = "FILE://";
constexpr std::string_view kSeparators = "/\\";

// The system's calls hand a temporary folder out in a buffer of 260 bytes, and a name follows.
constexpr std::size_t kLongestPath = 200;

constexpr char kRemedy[] = "; let TMPDIR (on Windows TMP) name another place";

[[noreturn]] void Refuse(const fs::path& parent, const std::string& why) {
    throw Failure(ExitCode::kFailed, "cannot make a folder for temporary files in " +
                                         Quoted(Text_Of(parent)) + ": " + why + kRemedy);
}

std::string Random_Name() {
    std::random_device random;
    char name[40];
    std::snprintf(name, sizeof name, "attachments-%08x%08x", random(), random());
    return name;
}

fs::path Make_Private_Folder(const fs::path& parent) {
    std::error_code error;
    for (;;) {
        fs::path path = parent / Random_Name();
        const bool made = fs::create_directory(path, error);
        if (error) Refuse(parent, error.message());
        if (!made) continue;
        fs::permissions(path, fs::perms::owner_all, error);
        return path;
    }
}

}  // namespace

WorkFolder::WorkFolder() {
    std::error_code error;
    fs::path parent = fs::temp_directory_path(error);
    if (error)
        throw Failure(ExitCode::kFailed,
                      "there is no folder for temporary files: " + error.message() + kRemedy);
    parent = fs::absolute(parent);
    if (Text_Of(parent).size() > kLongestPath) Refuse(parent, "its path is too long");
    m_Path = Make_Private_Folder(parent);
    char used[MAX_PATH + 1] = {};
    if (!Set_Temporary_Folder(Path()) || GetTempPathA(sizeof used, used) > MAX_PATH)
        Refuse(parent, "the system does not use it");
    m_Prefix = std::string(kReference) + used;
}

WorkFolder::~WorkFolder() {
    std::error_code error;
    fs::remove_all(m_Path, error);
}

std::string WorkFolder::Path() const {
    return Text_Of(m_Path);
}

std::string WorkFolder::New_Path() {
    return Path() + rv::kPathSeparator + "document-" + std::to_string(++m_Count) + ".xml";
}

bool WorkFolder::Holds(const RVString& value) const {
    const std::string_view text(value, static_cast<std::size_t>(value.GetLength()));
    if (!text.starts_with(m_Prefix)) return false;
    const std::string_view rest = text.substr(m_Prefix.size());
    const std::size_t name = rest.find_first_not_of(kSeparators);
    return name != std::string_view::npos &&
           rest.find_first_of(kSeparators, name) == std::string_view::npos &&
           rest.substr(name).starts_with("ZORTmp_");
}

std::uint64_t WorkFolder::Size() const {
    std::uint64_t size = 0;
    std::error_code error;
    for (fs::directory_iterator entry(m_Path, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code gone;
        const std::uintmax_t length = entry->file_size(gone);
        if (!gone) size += length;
    }
    return size;
}

std::string Path_Of_Reference(const RVString& reference) {
    const std::string_view text(reference, static_cast<std::size_t>(reference.GetLength()));
    return std::string(text.substr(kReference.size()));
}

}  // namespace attachments
