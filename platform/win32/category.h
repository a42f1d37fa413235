// Categories of classes: which class serves which applications.
//
// They stand in the registry, below HKEY_CLASSES_ROOT. Component Categories\{ID} has the
// descriptions of a category, each named by its locale in digits of base 16;
// CLSID\{ID}\Implemented Categories\{ID} says that a class implements a category.
#pragma once

#include "guid.h"
#include "types.h"
#include "unknown.h"

using CLSID = GUID;
using REFCLSID = const CLSID&;
using CATID = GUID;

struct CATEGORYINFO {
    CATID catid;
    LCID lcid;
    OLECHAR szDescription[128];  // with a terminator
};

// Slots are in the published order. They give S_OK, or the error of the registry as a HRESULT; what
// comes before the failure stays. Those that nobody calls give E_NOTIMPL. Any thread.
struct RVPLATFORM_API ICatRegister : IUnknown {
    virtual HRESULT RegisterCategories(ULONG count, CATEGORYINFO* categories) = 0;
    virtual HRESULT UnRegisterCategories(ULONG count, CATID* categories) = 0;
    // Makes the class known, too, where it is not.
    virtual HRESULT RegisterClassImplCategories(REFCLSID class_id, ULONG count,
                                                CATID* categories) = 0;
    // A category that the class does not implement is no failure.
    virtual HRESULT UnRegisterClassImplCategories(REFCLSID class_id, ULONG count,
                                                  CATID* categories) = 0;
    virtual HRESULT RegisterClassReqCategories(REFCLSID class_id, ULONG count,
                                               CATID* categories) = 0;
    virtual HRESULT UnRegisterClassReqCategories(REFCLSID class_id, ULONG count,
                                                 CATID* categories) = 0;
};

inline constexpr CLSID CLSID_StdComponentCategoriesMgr = {
    0x0002E005, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IUnknown = {0, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_ICatRegister = {0x0002E012, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

inline constexpr DWORD CLSCTX_INPROC_SERVER = 1;
inline constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001);
inline constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002);
inline constexpr HRESULT REGDB_E_CLASSNOTREG = static_cast<HRESULT>(0x80040154);

// What a thread calls before and after it uses COM. Nothing has to be made ready here: S_OK.
inline HRESULT CoInitialize(void*) noexcept {
    return S_OK;
}
inline void CoUninitialize() noexcept {}

// Makes an object of a class, of which there is one: CLSID_StdComponentCategoriesMgr, with
// ICatRegister. `outer`: null. `*object`, which the caller releases, is null on failure:
// REGDB_E_CLASSNOTREG for another class, E_NOINTERFACE for another interface, E_OUTOFMEMORY, and
// the error of the registry when that cannot be read. Any thread, and nothing has to be called
// before.
[[nodiscard]] RVPLATFORM_API HRESULT CoCreateInstance(REFCLSID class_id, IUnknown* outer,
                                                      DWORD context, REFIID interface_id,
                                                      void** object) noexcept;
