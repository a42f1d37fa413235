// The copies of the sibling libraries' records.
#include "../frame/RVAppInfo.h"
#include "../frame/RVMasterSettings.h"
#include "../frame/RVRegTool.h"
#include "../frame/RVbsuErrorLog.h"

// On Windows the compiler tells of each member that leaves by another library than its class does.
// It is meant.
#pragma GCC diagnostic ignored "-Wattributes"

RVAppInfo::RVAppInfo(const RVAppInfo&) = default;

RVAppInfo& RVAppInfo::operator=(const RVAppInfo&) = default;

RVMasterSettings::RVMasterSettings(const RVMasterSettings&) = default;

RVMasterSettings& RVMasterSettings::operator=(const RVMasterSettings&) = default;

bool RVMasterSettings::Is_Open() const noexcept {
    return m_Open;
}

RVRegTool::RVRegTool(const RVRegTool&) = default;

RVRegTool& RVRegTool::operator=(const RVRegTool&) = default;

RVbsuErrorLog::RVbsuErrorLog(const RVbsuErrorLog&) = default;

RVbsuErrorLog& RVbsuErrorLog::operator=(const RVbsuErrorLog&) = default;
