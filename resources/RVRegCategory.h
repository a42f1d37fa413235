// Which applications a plug-in serves.
#pragma once

#include "../frame/export.h"
#include "../platform/winapi.h"

// Enters a plug-in's class under the applications of the suite that it serves, for the plug-in's
// registration of itself. Each application has a category of COM, by its number:
//
//     1  Plant Workbench       6  Plant Estate
//     2  Plant Sentinel        7  Plant Workbench Entry
//     3  Plant Records         8  Plant Sentinel, the server
//     4  Plant Walkdown        9  Plant Remote Client
//     5  Plant Viewpoint      10  Plant Workbench Field Partner
//
// Other numbers give false, and nothing else happens. Where COM's category manager cannot be had,
// a box says so, and the result is false. The calling thread has initialised COM; several threads
// may register at once. Nothing is thrown.
class RVUTILS_API RVRegCategory {
public:
    // `class_id`: the plug-in's class, which need not be registered.
    explicit RVRegCategory(const GUID& class_id) noexcept;

    // Also makes the application's category, which stays for good. False when either fails, and
    // what came before is then done.
    bool Register_For_Application(short application) const noexcept;
    // Also takes the list of the class's categories away when it is empty. True however much of
    // that was there.
    bool Unregister_For_Application(short application) const noexcept;

private:
    static short Get_Application_Index(short application) noexcept;

    GUID m_Class_Id;
};
