#include "DirMgr.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "../frame/RVDev.h"
#include "../platform/mfc/Allocation.h"
#include "../platform/paths.h"

namespace {

constexpr unsigned int kMissing = 25;

constexpr int kLongestDirectory = 260;  // with its NUL

void Report_Missing(ULONG line) {
    pProgrammer_Error(kMissing, "DirMgr", line, true);
}

bool Is_In_Network(const char* path) noexcept {
    return std::strncmp(path, "\\\\", 2) == 0;
}

// The parts of a path.
struct Parts {
    char drive[3];
    char directory[kLongestDirectory];
    char name[260];
    char extension[256];
};

bool Split(const char* path, Parts& parts) noexcept {
    return _splitpath_s(path, parts.drive, sizeof parts.drive, parts.directory,
                        sizeof parts.directory, parts.name, sizeof parts.name, parts.extension,
                        sizeof parts.extension) == 0;
}

bool Make(const char* directory) noexcept {
    return _mkdir(directory) != -1 || errno == EEXIST;
}

// Makes and enters every level of `path`, whose levels begin at `first`, behind the drive. Of an
// absolute path these are its beginnings, one longer than the other; of a relative one each has its
// own name alone, since the one before is entered by then.
bool Make_And_Enter(char* path, char* first) noexcept {
    const bool absolute = rv::Is_Path_Separator(*first);
    char* level = path;
    for (char* at = first;; ++at) {
        at = std::find_if(at, at + std::strlen(at), rv::Is_Path_Separator);
        const char separator = std::exchange(*at, '\0');
        if (at != first) {
            if (!Make(level)) return false;
            const bool entered = _chdir(level) != -1;
            if (!entered && !absolute && separator) return false;
        }
        if (!separator) return true;
        *at = separator;
        if (!absolute) level = first = at + 1;
    }
}

}  // namespace

RVDirMgr::RVDirMgr(bool restore) : m_Restore(restore) {
    Init();
}

RVDirMgr::RVDirMgr(RVString path, bool restore) : m_Restore(restore) {
    Init();
    Set_Current_Dir(std::move(path), false);
}

RVDirMgr::RVDirMgr(const RVDirMgr&) = default;

RVDirMgr& RVDirMgr::operator=(const RVDirMgr& other) {
    RVString directory = other.m_Saved_Directory;
    m_Restore = other.m_Restore;
    m_Saved_Directory = std::move(directory);
    m_Saved_Drive = other.m_Saved_Drive;
    m_Make_Path = other.m_Make_Path;
    m_DbgHelp = other.m_DbgHelp;
    return *this;
}

RVDirMgr::~RVDirMgr() {
    if (!m_Restore) return;
    try {
        Restore_Dir();
    } catch (CMemoryException* exception) {
        exception->Delete();
    }
}

void RVDirMgr::Init() {
    Get_Current_Dir(m_Saved_Directory);
    m_Saved_Drive = _getdrive();
    HMODULE const library = LoadLibraryA("dbghelp.dll");
    if (!library) return Report_Missing(__LINE__);
    m_DbgHelp = {library, [](HMODULE module) { FreeLibrary(module); }, rv::HeapAllocator<void*>()};
    // Compilers warn of a cast between functions unless it goes by this type.
    const auto function =
        reinterpret_cast<void (*)()>(GetProcAddress(library, "MakeSureDirectoryPathExists"));
    m_Make_Path = reinterpret_cast<PathMaker>(function);
    if (!m_Make_Path) Report_Missing(__LINE__);
}

bool RVDirMgr::Get_Current_Dir(RVString& directory) const {
    char text[kLongestDirectory];
    if (!_getcwd(text, kLongestDirectory)) return false;
    directory = text;
    return true;
}

bool RVDirMgr::Set_Current_Dir(RVString path, bool create) {
    if (path.IsEmpty()) return false;
    if (m_Make_Path && Is_In_Network(path)) {
        path += '\\';
        return m_Make_Path(path) != FALSE;
    }
    Parts parts;
    if (!Split(path, parts)) return false;
    RVString drive(parts.drive);
    drive.MakeUpper();
    const bool has_drive = drive[0] >= 'A' && drive[0] <= 'Z';
    // The drive stays in front: where drives have no current directory of their own, a path without
    // it would be one below the root.
    path = has_drive ? drive : RVString();
    const int first = path.GetLength();
    path += parts.directory;
    path += parts.name;
    path += parts.extension;
    if (has_drive && _chdrive(drive[0] - '@') == -1) return false;
    if (path.GetLength() > first && _chdir(path) != -1) return true;
    if (!create) return false;
    char* const text = path.GetBuffer(0);
    return Make_And_Enter(text, text + first);
}

bool RVDirMgr::Restore_Dir() {
    // It has no drive, and Set_Current_Dir would not enter it.
    if (Is_In_Network(m_Saved_Directory)) return _chdir(m_Saved_Directory) != -1;
    if (_chdrive(m_Saved_Drive) == -1) return false;
    return Set_Current_Dir(m_Saved_Directory, false);
}
