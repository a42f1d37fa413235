#include "SettingsHost.h"

#include <atomic>
#include <new>

#include "../../frame/RVString.h"
#include "../../platform/mfc/CException.h"
#include "../../platform/mfc/HeapObject.h"

namespace {

constexpr char kSettings[] = "Software\\ZOR Asset Care\\ZOR Plant Workbench\\Settings";
constexpr GUID kUnknown = {0, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

// Counts references to an object of one interface and ends with the last of them.
template <class Interface>
class Counted : public Interface, public rv::HeapObject {
public:
    explicit Counted(const IID& id) noexcept : m_Id(id) {}
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    HRESULT QueryInterface(REFIID id, void** object) final {
        const bool known = IsEqualGUID(id, m_Id) || IsEqualGUID(id, kUnknown);
        *object = known ? static_cast<Interface*>(this) : nullptr;
        if (known) AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG AddRef() final { return ++m_References; }
    ULONG Release() final {
        const ULONG left = --m_References;
        if (left == 0) delete this;
        return left;
    }

protected:
    virtual ~Counted() = default;

private:
    const IID& m_Id;
    std::atomic<ULONG> m_References = 1;
};

class Key {
public:
    // `access`: KEY_READ, which finds the key or not, or KEY_WRITE, which makes it where need be.
    explicit Key(REGSAM access) noexcept {
        const LONG error = access == KEY_READ
                               ? RegOpenKeyExA(HKEY_CURRENT_USER, kSettings, 0, access, &m_Key)
                               : RegCreateKeyExA(HKEY_CURRENT_USER, kSettings, 0, nullptr, 0,
                                                 access, nullptr, &m_Key, nullptr);
        if (error != ERROR_SUCCESS) m_Key = nullptr;
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key() {
        if (m_Key) RegCloseKey(m_Key);
    }

    // False for a name without a text.
    bool Read(const CString& name, CString& text) const {
        DWORD size = 256;
        for (;;) {
            DWORD type = 0, bytes = size;
            auto* const buffer = reinterpret_cast<BYTE*>(text.GetBuffer(static_cast<int>(size)));
            const LONG error = RegQueryValueExA(m_Key, name, nullptr, &type, buffer, &bytes);
            if (error != ERROR_MORE_DATA) {
                const bool is_text = error == ERROR_SUCCESS && type == REG_SZ;
                buffer[is_text ? bytes : 0] = 0;
                text.ReleaseBuffer();
                return is_text;
            }
            // Somebody may write a longer one meanwhile.
            if (bytes > 0x10000000) return false;
            size = bytes;
        }
    }
    bool Write(const CString& name, const CString& text) const {
        return RegSetValueExA(m_Key, name, 0, REG_SZ,
                              reinterpret_cast<const BYTE*>(text.GetString()),
                              static_cast<DWORD>(text.GetLength()) + 1) == ERROR_SUCCESS;
    }
    bool Remove(const CString& name) const { return RegDeleteValueA(m_Key, name) == ERROR_SUCCESS; }
    explicit operator bool() const noexcept { return m_Key != nullptr; }

private:
    HKEY m_Key = nullptr;
};

// Runs an operation that may lack memory.
template <class Operation>
HRESULT Result_Of(Operation operation) {
    try {
        return operation() ? S_OK : E_FAIL;
    } catch (CMemoryException* error) {
        error->Delete();
        return E_OUTOFMEMORY;
    }
}

class Store final : public Counted<IRVSettingsStore> {
public:
    Store() noexcept : Counted(IID_IRVSettingsStore) {}

    HRESULT Begin_Read(IUnknown*, ULONG) override { return S_OK; }
    HRESULT Finish_Write() override { return S_OK; }
    HRESULT Has_Text(BSTR key, ULONG) override {
        const HRESULT result = Result_Of([key] {
            CString text;
            const Key settings(KEY_READ);
            return settings && settings.Read(CString(key), text);
        });
        return result == E_FAIL ? S_FALSE : result;
    }
    HRESULT Remove_Text(BSTR key, ULONG) override {
        return Result_Of([key] {
            const Key settings(KEY_WRITE);
            return settings && settings.Remove(CString(key));
        });
    }
    HRESULT Get_Text(BSTR key, ULONG, BSTR* text) override {
        *text = nullptr;
        return Result_Of([key, text] {
            RVString found;
            const Key settings(KEY_READ);
            if (!settings || !settings.Read(CString(key), found)) return false;
            *text = found.Get_BSTR();
            return true;
        });
    }
    HRESULT Set_Text(BSTR key, ULONG, BSTR value) override {
        return Result_Of([key, value] {
            const Key settings(KEY_WRITE);
            return settings && settings.Write(CString(key), CString(value));
        });
    }
};

class Host final : public Counted<IRVHostServices> {
public:
    Host() noexcept : Counted(IID_IRVHostServices) {}

    HRESULT Has_Service(REFIID id) override {
        return IsEqualGUID(id, IID_IRVSettingsStore) ? S_OK : S_FALSE;
    }
    HRESULT Get_Service(REFIID id, void** service) override {
        *service = nullptr;
        if (Has_Service(id) != S_OK) return E_NOINTERFACE;
        *service = static_cast<IRVSettingsStore*>(new (std::nothrow) Store);
        return *service ? S_OK : E_OUTOFMEMORY;
    }
};

}  // namespace

IUnknown* pCreate_Settings_Host() noexcept {
    return static_cast<IRVHostServices*>(new (std::nothrow) Host);
}
