// Registry values that write down who asks for them, in the place of those that work.
#include <RVUtils/RVRegTool.h>

#include <cstdint>

#include "recording_manager.h"

using rv_test::The_Recording;

RVRegTool::RVRegTool(const HKEY& key, const RVString& name) {
    RVString call;
    call.Format("registry %x %s", static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(key)),
                name);
    The_Recording().calls.emplace_back(call.GetString());
}

RVRegTool::~RVRegTool() = default;

bool RVRegTool::Get_Value(const RVString& name, const RVString& section, RVString& value,
                          ULONG number) {
    RVString call;
    call.Format("value %s|%s|%u", name, section, static_cast<unsigned>(number));
    The_Recording().calls.emplace_back(call.GetString());
    const auto found = The_Recording().registry.find(std::string(section) + '/' + name.GetString());
    if (found != The_Recording().registry.end()) value = found->second.c_str();
    return false;  // nobody is to look at it
}
