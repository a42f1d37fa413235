// Directories where dbghelp.dll is missing, or too old: the library's own source over a loader that
// refuses.
#include <RVUtils/winapi.h>

namespace {

bool g_Loads = false;

HMODULE Load(const char* name) {
    return g_Loads ? LoadLibraryA(name) : nullptr;
}
FARPROC Find(HMODULE, const char*) {
    return nullptr;
}

}  // namespace

#define LoadLibraryA Load
#define GetProcAddress Find
#include "../../services/DirMgr.cpp"

#include <gtest/gtest.h>

#include "report_recorder.h"

namespace {

TEST(DirMgr, WorksOnWithoutThePathMaker) {
    rv_test::ReportRecorder reports;
    for (const bool loads : {false, true}) {
        g_Loads = loads;
        RVDirMgr directory;
        EXPECT_EQ(reports.Take(), (rv_test::Reports{{25, "DirMgr"}}));
        // The network is like all else by then, and what is missing there is not made.
        EXPECT_FALSE(directory.Set_Current_Dir("\\\\rv_test\\missing", false));
        EXPECT_TRUE(directory.Set_Current_Dir("..", false));
    }
    EXPECT_FALSE(GetModuleHandleA("dbghelp.dll"));
}

}  // namespace
