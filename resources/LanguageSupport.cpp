#include "LanguageSupport.h"

#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "../frame/RVDev.h"
#include "../frame/RVRegTool.h"
#include "../frame/SuiteConstants.h"
#include "../platform/mfc/CException.h"
#include "../platform/mfc/CStringArray.h"

namespace {

constexpr unsigned int kNoInstance = 11;
constexpr unsigned int kNoPointer = 12;
constexpr unsigned int kWrongText = 13;

constexpr std::size_t kLongestTag = 4;
constexpr unsigned short kLastResort = 0x409;
constexpr ULONG kApplicationModule = 0xFFFFFFFF;

constexpr char kHere[] = ".\\";
constexpr char kBeside[] = "..\\..\\language";

void Report(unsigned int code, ULONG line) {
    pProgrammer_Error(code, "langsprt", line, true);
}

void Check(const char* application, HINSTANCE instance) {
    if (!instance) Report(kNoInstance, __LINE__);
    if (!application) return Report(kNoPointer, __LINE__);
    const std::size_t length = std::strlen(application);
    if (length < 1) Report(kWrongText, __LINE__);
    if (length > kLongestTag) Report(kWrongText, __LINE__);
}

void Add_Joined(CStringArray& directories, const RVString& path, const char* rest) {
    if (path.IsEmpty()) return;
    RVString joined;
    joined.Format("%s\\%s", path, rest);
    directories.Add(joined);
}

void List_Directories(CStringArray& directories) {
    RVRegTool settings(HKEY_LOCAL_MACHINE, rv::kSuiteKey);
    RVString language_path, application_path;
    settings.Get_Value(rv::kLanguagePath, rv::kApplicationSettings, language_path, 1);
    settings.Get_Value(rv::kApplicationPath, rv::kApplicationSettings, application_path, 1);
    Add_Joined(directories, language_path, kHere);
    Add_Joined(directories, application_path, kHere);
    Add_Joined(directories, application_path, kBeside);
    directories.Add(kHere);
    directories.Add(kBeside);
}

bool Opens_One_Of(RVLanguageManager& manager, const unsigned short (&languages)[3]) {
    for (const unsigned short language : languages)
        if (manager.Open_Language(language, true, true)) return true;
    return false;
}

using Manager = std::unique_ptr<RVLanguageManager>;

// Null when no language of any directory opens; else stores the directory.
Manager Open_First(const char* application, const unsigned short (&languages)[3],
                   RVString& directory) {
    CStringArray directories;
    List_Directories(directories);
    const RVString tag(application);
    for (INT_PTR i = 0; i < directories.GetSize(); ++i) {
        directory = directories[i];
        Manager manager(new (std::nothrow) RVLanguageManager(directory, tag));
        if (!manager || Opens_One_Of(*manager, languages)) return manager;
    }
    return nullptr;
}

}  // namespace

bool pInit_Language_Support(RVResourceLoader& loader, RVLanguageManager*& manager,
                            const char* application, HINSTANCE instance) {
    Check(application, instance);
    manager = nullptr;
    unsigned short first = 0, second = 0;
    rvGet_Language_Id(&first, &second);
    RVString settings;
    Manager opened = Open_First(application, {second, first, kLastResort}, settings);
    if (!opened) return false;
    settings += "\\custom.ini";
    manager = opened.release();
    loader.Set_Config(manager, kApplicationModule, instance);
    if (GetPrivateProfileIntA("Translation", "LiveMode", 0, settings) != 0)
        manager->Set_Live_Update_Mode(true);
    return true;
}

bool pHandle_Language_Message(RVLanguageManager* manager, ULONG first, ULONG second) {
    constexpr ULONG kFilesChanged = 1;
    if (!manager) {
        Report(kNoPointer, __LINE__);
        return false;
    }
    if (!manager->Is_Language_Message(rvGet_Language_Tools_Message_Id(), first,
                                      static_cast<LONG>(second)))
        return false;
    if (first >> 16 == kFilesChanged) {
        RV_file_info2 info;
        manager->Get_Translation_Info(info);
    }
    return true;
}

void pCleanup_Language_Support(RVResourceLoader& loader, RVLanguageManager*& manager) {
    delete std::exchange(manager, nullptr);
    loader.Set_Config(nullptr, 0, nullptr);
}
