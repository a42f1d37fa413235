#include "ColumnWidthStore.h"

#include <memory>

#include "../frame/RVSettings.h"

namespace rv {

namespace {

struct Releaser {
    void operator()(IUnknown* object) const noexcept { object->Release(); }
};
template <class Interface>
using Held = std::unique_ptr<Interface, Releaser>;

struct TextDeleter {
    void operator()(BSTR text) const noexcept { SysFreeString(text); }
};
using HeldText = std::unique_ptr<OLECHAR, TextDeleter>;

HeldText Key_Of(const RVString& list_name) {
    return HeldText(RVString(CString("ListCtrlColWidth") + list_name).Get_BSTR());
}

Held<IRVSettingsStore> Store_Of(IUnknown& host) {
    void* services = nullptr;
    host.QueryInterface(IID_IRVHostServices, &services);
    const Held<IRVHostServices> held(static_cast<IRVHostServices*>(services));
    void* store = nullptr;
    if (held) held->Get_Service(IID_IRVSettingsStore, &store);
    return Held<IRVSettingsStore>(static_cast<IRVSettingsStore*>(store));
}

}  // namespace

StoreAnswer Read_Column_Widths(IUnknown& host, const RVString& list_name, RVString& packed) {
    const HeldText key = Key_Of(list_name);
    const Held<IRVSettingsStore> store = Store_Of(host);
    if (!store) return StoreAnswer::kNoStore;
    store->Begin_Read(&host, 0);
    BSTR text = nullptr;
    if (store->Get_Text(key.get(), 0, &text) < 0) return StoreAnswer::kNothing;
    const HeldText held(text);
    packed = held.get();
    return StoreAnswer::kText;
}

void Write_Column_Widths(IUnknown& host, const RVString& list_name, const RVString& packed) {
    const Held<IRVSettingsStore> store = Store_Of(host);
    if (!store) return;
    const HeldText key = Key_Of(list_name), value(packed.Get_BSTR());
    store->Set_Text(key.get(), 0, value.get());
    store->Finish_Write();
}

}  // namespace rv
