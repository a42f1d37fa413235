#include "RVEditingStatus.h"

namespace {

constexpr RV_EDITSTATUS kNone{0};
constexpr RV_EDITSTATUS kOverriding{3};

}  // namespace

RVEditingStatus::RVEditingStatus() noexcept = default;

RVEditingStatus::RVEditingStatus(const RVEditingStatus&) noexcept = default;

RVEditingStatus& RVEditingStatus::operator=(const RVEditingStatus&) noexcept = default;

RVEditingStatus::~RVEditingStatus() = default;

bool RVEditingStatus::Set_Status(RV_EDITSTATUS status) noexcept {
    if (m_Status == kNone || status == kOverriding) m_Status = status;
    return m_Status == status;
}

RV_EDITSTATUS RVEditingStatus::Get_Status() noexcept {
    return m_Status;
}

void RVEditingStatus::Reset_Status() noexcept {
    m_Status = kNone;
}
