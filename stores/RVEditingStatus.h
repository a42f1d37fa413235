// What has happened to an edited thing.
#pragma once

#include "../frame/export.h"

// A status. 0 is none and 3 overrides every other; the names, and all other values, are the
// application's: `constexpr RV_EDITSTATUS kSaved{1};`
enum RV_EDITSTATUS : int {};

// Holds one status. The first that is set stays until Reset_Status; only 3 takes its place. An
// object belongs to one thread at a time.
class RVUTILS_API RVEditingStatus {
public:
    RVEditingStatus() noexcept;
    RVEditingStatus(const RVEditingStatus& other) noexcept;
    RVEditingStatus& operator=(const RVEditingStatus& other) noexcept;
    virtual ~RVEditingStatus();

    // Whether the status now is the given one, set just now or before. 0 takes nothing back: it is
    // refused like any other.
    bool Set_Status(RV_EDITSTATUS status) noexcept;
    RV_EDITSTATUS Get_Status() noexcept;
    void Reset_Status() noexcept;

private:
    RV_EDITSTATUS m_Status{0};
};
