// The two interfaces that a variant holds.
//
// Whoever hands a pointer on takes a reference for the receiver with AddRef; whoever has one to
// give back calls Release, and the last of them ends the object. Slots are in the published order.
#pragma once

#include "../export.h"
#include "bstr.h"
#include "types.h"

struct GUID;
struct tagVARIANT;

using IID = GUID;
using REFIID = const IID&;
using DISPID = LONG;
using LPOLESTR = OLECHAR*;

struct RVPLATFORM_API IUnknown {
    virtual HRESULT QueryInterface(REFIID id, void** object) = 0;
    virtual ULONG AddRef() = 0;
    virtual ULONG Release() = 0;
};

// What only the implementer of an IDispatch and its caller know.
struct ITypeInfo;
struct DISPPARAMS;
struct EXCEPINFO;

struct RVPLATFORM_API IDispatch : IUnknown {
    virtual HRESULT GetTypeInfoCount(UINT* count) = 0;
    virtual HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) = 0;
    virtual HRESULT GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                  DISPID* ids) = 0;
    virtual HRESULT Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags,
                           DISPPARAMS* arguments, tagVARIANT* result, EXCEPINFO* exception,
                           UINT* wrong_argument) = 0;
};
