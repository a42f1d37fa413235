// Counted wide texts of OLE Automation.
//
// The length stands in bytes in front of the text, a terminator behind it that is not counted, and
// NUL characters inside are kept. Null is a valid text of no characters. A text belongs to whoever
// allocated it, until SysFreeString. Any thread.
#pragma once

#include "../export.h"
#include "types.h"

using OLECHAR = wchar_t;
using BSTR = OLECHAR*;

// A new text: a copy of what stands before the terminator. Null for null, and without memory.
[[nodiscard]] RVPLATFORM_API BSTR SysAllocString(const OLECHAR* text) noexcept;

// A new text of `length` characters, copied from `text`, or with unspecified content when `text` is
// null. Null without memory.
[[nodiscard]] RVPLATFORM_API BSTR SysAllocStringLen(const OLECHAR* text, UINT length) noexcept;

// The same with a length in bytes, which need not make whole characters.
[[nodiscard]] RVPLATFORM_API BSTR SysAllocStringByteLen(LPCSTR bytes, UINT length) noexcept;

RVPLATFORM_API void SysFreeString(BSTR text) noexcept;

// Length in characters, and in bytes.
[[nodiscard]] RVPLATFORM_API UINT SysStringLen(BSTR text) noexcept;
[[nodiscard]] RVPLATFORM_API UINT SysStringByteLen(BSTR text) noexcept;
