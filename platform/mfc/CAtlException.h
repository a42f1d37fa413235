// The exception of the template library: thrown and caught by value.
#pragma once

#include "../export.h"
#include "../winapi.h"

namespace ATL {

// Carries the status of what failed.
//
//     try {
//         moment.Get_Value(seconds, false);
//     } catch (const ATL::CAtlException& error) {
//         ... error.m_hr ...
//     }
class RVPLATFORM_API CAtlException {
public:
    explicit CAtlException(HRESULT status) noexcept : m_hr(status) {}
    operator HRESULT() const noexcept { return m_hr; }

    HRESULT m_hr;
};

// Throws CAtlException(status).
[[noreturn]] RVPLATFORM_API void AtlThrow(HRESULT status);

}  // namespace ATL
