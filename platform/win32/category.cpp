#include "category.h"

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <new>
#include <span>
#include <type_traits>

#include "error.h"
#include "nothrow_object.h"
#include "registry.h"
#include "text.h"

namespace {

HRESULT Result_Of(LSTATUS status) noexcept {
    constexpr std::uint32_t kErrorOfSystem = 0x80070000;
    const auto number = static_cast<std::uint32_t>(status);
    return status == ERROR_SUCCESS ? S_OK
                                   : static_cast<HRESULT>(kErrorOfSystem | (number & 0xFFFF));
}

struct CloseKey {
    void operator()(HKEY key) const noexcept { RegCloseKey(key); }
};
using OwnedKey = std::unique_ptr<std::remove_pointer_t<HKEY>, CloseKey>;

class GuidText {
public:
    explicit GuidText(REFGUID guid) noexcept {
        wchar_t wide[sizeof m_Text];
        StringFromGUID2(guid, wide, sizeof m_Text);
        for (std::size_t i = 0; i < sizeof m_Text; ++i)
            m_Text[i] = static_cast<char>(wide[i]);
    }
    const char* Get() const noexcept { return m_Text; }

private:
    char m_Text[39];
};

// Of a key below HKEY_CLASSES_ROOT.
class Path {
public:
    static Path Of_Category(REFGUID category) noexcept {
        Path path;
        std::snprintf(path.m_Text, sizeof path.m_Text, "Component Categories\\%s",
                      GuidText(category).Get());
        return path;
    }
    static Path Of_Member(REFCLSID class_id, REFGUID category) noexcept {
        Path path;
        std::snprintf(path.m_Text, sizeof path.m_Text, "CLSID\\%s\\Implemented Categories\\%s",
                      GuidText(class_id).Get(), GuidText(category).Get());
        return path;
    }

    LSTATUS Make(OwnedKey& key) const noexcept {
        HKEY made = nullptr;
        const LSTATUS status =
            RegCreateKeyExA(HKEY_CLASSES_ROOT, m_Text, 0, nullptr, REG_OPTION_NON_VOLATILE,
                            KEY_SET_VALUE, nullptr, &made, nullptr);
        key.reset(made);
        return status;
    }
    LSTATUS Delete() const noexcept { return RegDeleteKeyA(HKEY_CLASSES_ROOT, m_Text); }

private:
    char m_Text[128];
};

// A character takes up to six bytes.
constexpr int kDescriptionRoom = 6 * std::extent_v<decltype(CATEGORYINFO::szDescription)>;

LSTATUS Register(const CATEGORYINFO& category) noexcept {
    OwnedKey key;
    const LSTATUS status = Path::Of_Category(category.catid).Make(key);
    if (status != ERROR_SUCCESS) return status;
    char locale[9];
    std::snprintf(locale, sizeof locale, "%X", category.lcid);
    char description[kDescriptionRoom];
    const int size = WideCharToMultiByte(CP_ACP, 0, category.szDescription, -1, description,
                                         sizeof description, nullptr, nullptr);
    return RegSetValueExA(key.get(), locale, 0, REG_SZ, reinterpret_cast<BYTE*>(description),
                          static_cast<DWORD>(size));
}

// Calls `act` for each until one fails.
template <class Item, class Act>
HRESULT For_Each(ULONG count, Item* items, Act act) noexcept {
    if (!items) return E_INVALIDARG;
    for (const Item& item : std::span(items, count))
        if (const LSTATUS status = act(item); status != ERROR_SUCCESS) return Result_Of(status);
    return S_OK;
}

class CategoryManager final : public ICatRegister, public rv::NothrowObject {
public:
    HRESULT QueryInterface(REFIID id, void** object) override {
        const bool is_known = IsEqualGUID(id, IID_ICatRegister) || IsEqualGUID(id, IID_IUnknown);
        *object = is_known ? static_cast<ICatRegister*>(this) : nullptr;
        if (is_known) AddRef();
        return is_known ? S_OK : E_NOINTERFACE;
    }
    ULONG AddRef() override { return ++m_References; }
    ULONG Release() override {
        const ULONG left = --m_References;
        if (left == 0) delete this;
        return left;
    }

    HRESULT RegisterCategories(ULONG count, CATEGORYINFO* categories) override {
        return For_Each(count, categories, Register);
    }
    HRESULT RegisterClassImplCategories(REFCLSID class_id, ULONG count,
                                        CATID* categories) override {
        return For_Each(count, categories, [&](const CATID& category) {
            OwnedKey key;
            return Path::Of_Member(class_id, category).Make(key);
        });
    }
    HRESULT UnRegisterClassImplCategories(REFCLSID class_id, ULONG count,
                                          CATID* categories) override {
        return For_Each(count, categories, [&](const CATID& category) {
            const LSTATUS status = Path::Of_Member(class_id, category).Delete();
            return status == ERROR_FILE_NOT_FOUND ? LSTATUS{ERROR_SUCCESS} : status;
        });
    }

    HRESULT UnRegisterCategories(ULONG, CATID*) override { return E_NOTIMPL; }
    HRESULT RegisterClassReqCategories(REFCLSID, ULONG, CATID*) override { return E_NOTIMPL; }
    HRESULT UnRegisterClassReqCategories(REFCLSID, ULONG, CATID*) override { return E_NOTIMPL; }

private:
    ~CategoryManager() = default;

    std::atomic<ULONG> m_References = 1;
};

HRESULT Look_For_Registry() noexcept {
    return Result_Of(RegQueryInfoKeyA(HKEY_CLASSES_ROOT, nullptr, nullptr, nullptr, nullptr,
                                      nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                      nullptr));
}

}  // namespace

HRESULT CoCreateInstance(REFCLSID class_id, IUnknown* outer, DWORD, REFIID interface_id,
                         void** object) noexcept {
    if (!object || outer) return E_INVALIDARG;
    *object = nullptr;
    if (!IsEqualGUID(class_id, CLSID_StdComponentCategoriesMgr)) return REGDB_E_CLASSNOTREG;
    if (const HRESULT result = Look_For_Registry(); result != S_OK) return result;
    auto* const manager = new (std::nothrow) CategoryManager;
    if (!manager) return E_OUTOFMEMORY;
    const HRESULT result = manager->QueryInterface(interface_id, object);
    manager->Release();
    return result;
}
