// The current directory, for as long as an object lives.
#pragma once

#include <memory>
#include <type_traits>

#include "../frame/RVString.h"
#include "../frame/export.h"
#include "../platform/winapi.h"

// Notes the current drive and directory of the process when it is made, changes them on request,
// and goes back at its end.
//
//     {
//         RVDirMgr directory;
//         if (!directory.Set_Current_Dir(project, true)) return false;
//         ...
//     }
//
// Levels are separated by what the platform says: the backslash on Windows, on Linux also the
// slash (see path.h). A directory in the network is one that begins with two backslashes. The
// current directory may have 259 bytes, in a path that is handed in the levels 259, the last one
// 259 up to its last point and 255 from there; where a path has more, the operation fails.
//
// The current directory belongs to the whole process: only one thread at a time uses such objects.
//
// Reports go to pProgrammer_Error, file "DirMgr", from the constructors; the object works on, and
// directories in the network are then treated like all others:
//   25  dbghelp.dll cannot be loaded, or lacks MakeSureDirectoryPathExists
// What needs memory throws CMemoryException* when there is none, with everything as it was; the
// destructor then leaves the current directory as it is.
class RVUTILS_API RVDirMgr {
public:
    // `restore`: whether the end of the object goes back to the noted place.
    explicit RVDirMgr(bool restore = true);
    // The same, and then Set_Current_Dir(path, false), whatever that gives.
    RVDirMgr(RVString path, bool restore);
    // A path alone would be taken for `restore`.
    explicit RVDirMgr(const char* path) = delete;
    // Copies have the noted place and `restore` of the other, so each of them goes back at its end.
    RVDirMgr(const RVDirMgr& other);
    RVDirMgr& operator=(const RVDirMgr& other);
    virtual ~RVDirMgr();

    // False, with `directory` as it was, when the current directory is too long, or gone.
    bool Get_Current_Dir(RVString& directory) const;

    // Goes to a directory, and to its drive where the path names one.
    //
    // `create`: a directory that cannot be entered is made, level by level, with all that is
    // missing above it; true then says that each level is there, and whether the last one is a
    // directory that lets the process in is not looked at. A directory in the network is always
    // made, and never entered.
    //
    // False for an empty path, which changes nothing, and on failure. Nothing is taken back then:
    // the drive may be another, levels that were made stay, and the current directory may be one
    // of them.
    bool Set_Current_Dir(RVString path, bool create);

    // Goes back to the noted place, as often as it is called. One in the network is entered again.
    // False when it is gone, or could not be noted.
    bool Restore_Dir();

private:
    using PathMaker = BOOL(CALLBACK*)(const char* path);

    void Init();

    bool m_Restore;
    RVString m_Saved_Directory;  // empty when it could not be noted
    int m_Saved_Drive = 0;
    PathMaker m_Make_Path = nullptr;                            // null when it is not available
    std::shared_ptr<std::remove_pointer_t<HMODULE>> m_DbgHelp;  // that of m_Make_Path
};
