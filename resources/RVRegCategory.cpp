#include "RVRegCategory.h"

#include <cstdio>
#include <cwchar>
#include <iterator>
#include <memory>
#include <type_traits>

namespace {

constexpr LCID kLocale = 0x409;
constexpr char kBoxTitle[] = "Registration Error";
constexpr char kImplemented[] = "Implemented Categories";

constexpr struct {
    short application;
    CATID category;
    const wchar_t* description;
} kApplications[] = {
    {1,
     {0xFC46E63A, 0x6B62, 0x11D1, {0xA7, 0xEF, 0x00, 0x80, 0xC8, 0x3B, 0xFC, 0xEB}},
     L"ZOR Plant Workbench Application"},
    {2,
     {0xFC46E63B, 0x6B62, 0x11D1, {0xA7, 0xEF, 0x00, 0x80, 0xC8, 0x3B, 0xFC, 0xEB}},
     L"ZOR Plant Sentinel Application"},
    {3,
     {0xFC46E63C, 0x6B62, 0x11D1, {0xA7, 0xEF, 0x00, 0x80, 0xC8, 0x3B, 0xFC, 0xEB}},
     L"ZOR Plant Records Extension"},
    {4,
     {0x79436EED, 0x46EE, 0x40D2, {0x88, 0x0A, 0x50, 0x0D, 0xE9, 0x34, 0x1D, 0x0E}},
     L"ZOR Plant Walkdown Application"},
    {5,
     {0x7233E09D, 0x64DF, 0x4D96, {0x97, 0x76, 0x3E, 0x10, 0x9F, 0x51, 0x91, 0x0D}},
     L"ZOR Plant Viewpoint Application"},
    {6,
     {0xFC46E63D, 0x6B62, 0x11D1, {0xA7, 0xEF, 0x00, 0x80, 0xC8, 0x3B, 0xFC, 0xEB}},
     L"ZOR Plant Estate Application"},
    {7,
     {0xC967A136, 0x53A2, 0x4F65, {0xA6, 0x3C, 0x6A, 0x0E, 0x01, 0xDA, 0x62, 0x09}},
     L"ZOR Plant Workbench Entry Application"},
    {8,
     {0x72C1DAF8, 0x8985, 0x4B89, {0xBF, 0xA8, 0xE4, 0x31, 0x90, 0x2D, 0x11, 0x84}},
     L"ZOR Plant Sentinel Server"},
    {9,
     {0xE1203930, 0x22C2, 0x4791, {0xBF, 0x75, 0x59, 0x0B, 0x11, 0x86, 0xB0, 0x46}},
     L"ZOR Plant Remote Client Application"},
    {10,
     {0x7EC1322D, 0xFF99, 0x49B2, {0x9C, 0x20, 0x05, 0x21, 0xA1, 0x01, 0xE0, 0xF5}},
     L"ZOR Plant Workbench Field Partner Application"},
    {-1, {}, nullptr},
};

struct ReleaseObject {
    void operator()(IUnknown* object) const { object->Release(); }
};
using CategoryManager = std::unique_ptr<ICatRegister, ReleaseObject>;

// Null, behind a box with the text, where there is none.
CategoryManager Make_Manager(const char* failure) noexcept {
    void* manager = nullptr;
    if (CoCreateInstance(CLSID_StdComponentCategoriesMgr, nullptr, CLSCTX_INPROC_SERVER,
                         IID_ICatRegister, &manager) < 0) {
        MessageBoxA(GetTopWindow(nullptr), failure, kBoxTitle, MB_ICONINFORMATION);
        return nullptr;
    }
    return CategoryManager(static_cast<ICatRegister*>(manager));
}

struct CloseKey {
    void operator()(HKEY key) const noexcept { RegCloseKey(key); }
};
using Key = std::unique_ptr<std::remove_pointer_t<HKEY>, CloseKey>;

Key Open_Key(HKEY above, const char* path) noexcept {
    HKEY key = nullptr;
    return Key(RegOpenKeyExA(above, path, 0, KEY_ALL_ACCESS, &key) == ERROR_SUCCESS ? key
                                                                                    : nullptr);
}

Key Open_Class(const GUID& id) noexcept {
    char path[64];
    std::snprintf(path, sizeof path, "CLSID\\{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                  static_cast<unsigned>(id.Data1), id.Data2, id.Data3, id.Data4[0], id.Data4[1],
                  id.Data4[2], id.Data4[3], id.Data4[4], id.Data4[5], id.Data4[6], id.Data4[7]);
    return Open_Key(HKEY_CLASSES_ROOT, path);
}

// Whether it could be asked, and has nothing.
bool Is_Empty(const Key& key) noexcept {
    DWORD keys = 1, values = 1;
    RegQueryInfoKeyA(key.get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values,
                     nullptr, nullptr, nullptr, nullptr);
    return keys == 0 && values == 0;
}

}  // namespace

RVRegCategory::RVRegCategory(const GUID& class_id) noexcept : m_Class_Id(class_id) {}

bool RVRegCategory::Register_For_Application(short application) const noexcept {
    const short index = Get_Application_Index(application);
    if (index == -1) return false;
    const CategoryManager manager = Make_Manager(
        "CLSID_StdComponentCategoriesMgr was not found!  Unable to register as a plug-in.");
    if (!manager) return false;
    const auto& row = kApplications[index];
    CATEGORYINFO category = {row.category, kLocale, {}};
    std::wcsncpy(category.szDescription, row.description, std::size(category.szDescription) - 1);
    return manager->RegisterCategories(1, &category) >= 0 &&
           manager->RegisterClassImplCategories(m_Class_Id, 1, &category.catid) >= 0;
}

bool RVRegCategory::Unregister_For_Application(short application) const noexcept {
    const short index = Get_Application_Index(application);
    if (index == -1) return false;
    {
        const CategoryManager manager = Make_Manager(
            "CLSID_StdComponentCategoriesMgr was not found!  Unable to un-register as a plug-in.");
        if (!manager) return false;
        CATID category = kApplications[index].category;
        manager->UnRegisterClassImplCategories(m_Class_Id, 1, &category);
    }
    const Key class_key = Open_Class(m_Class_Id);
    if (!class_key) return true;
    Key implemented = Open_Key(class_key.get(), kImplemented);
    if (!implemented) return true;
    const bool is_empty = Is_Empty(implemented);
    implemented.reset();
    if (is_empty) RegDeleteKeyA(class_key.get(), kImplemented);
    return true;
}

short RVRegCategory::Get_Application_Index(short application) noexcept {
    short index = 0;
    while (kApplications[index].application != -1) {
        if (kApplications[index].application == application) return index;
        ++index;
    }
    return -1;
}
