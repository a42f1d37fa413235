// What the library requires of the suite's settings component: texts by key, from run to run.
//
// Interfaces of COM: who hands a pointer on takes a reference for the receiver, who has one to give
// back calls Release. A negative result is a failure.
#pragma once

#include "../platform/winapi.h"

// The numbers of the two interfaces, for QueryInterface and Get_Service.
inline constexpr IID IID_IRVHostServices = {
    0xDA9A1B49, 0x7564, 0x11D1, {0xA7, 0xEF, 0x00, 0x80, 0xC8, 0x3B, 0xFC, 0xEB}};
inline constexpr IID IID_IRVSettingsStore = {
    0xE1024872, 0x0C41, 0x11D2, {0xAF, 0x25, 0x00, 0x60, 0x08, 0x97, 0x85, 0x23}};

// What an application offers to the libraries that it loads.
struct IRVHostServices : IUnknown {
    // S_OK when there is a service of this id, else S_FALSE. The library does not call it.
    virtual HRESULT Has_Service(REFIID id) = 0;
    // Stores a reference to the service; null, with a failure, where there is none.
    virtual HRESULT Get_Service(REFIID id, void** service) = 0;
};

// Texts by key. `flags` are always 0.
struct IRVSettingsStore : IUnknown {
    // Comes before what is read together; `host` is where the store was had from.
    virtual HRESULT Begin_Read(IUnknown* host, ULONG flags) = 0;
    // Comes after what is written together.
    virtual HRESULT Finish_Write() = 0;
    // Whether a text is stored under the key: S_OK or S_FALSE. The library does not call it.
    virtual HRESULT Has_Text(BSTR key, ULONG flags) = 0;
    // Takes the text of the key away. The library does not call it.
    virtual HRESULT Remove_Text(BSTR key, ULONG flags) = 0;
    // Stores a new text, the caller's own; a failure where there is none under the key.
    virtual HRESULT Get_Text(BSTR key, ULONG flags, BSTR* text) = 0;
    virtual HRESULT Set_Text(BSTR key, ULONG flags, BSTR value) = 0;
};
