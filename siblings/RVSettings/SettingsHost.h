// The stand-in of the settings component: texts by key, kept in the registry.
#pragma once

#include "../../frame/RVSettings.h"
#include "../../frame/export.h"

// A new settings host, the caller's reference to it, for which the caller calls Release. Null when
// there is no memory. Its service is IRVSettingsStore.
//
// Texts are string values of the key "Software\ZOR Asset Care\ZOR Plant Workbench\Settings" of the
// current user, by the name of their key, in which case does not count. They go through the
// encoding of the thread's locale and end at a NUL. Each call reads or writes at once, so
// Begin_Read and Finish_Write have nothing to do; E_FAIL where the registry cannot be read or
// written, and E_OUTOFMEMORY. Hosts and stores may be used by several threads.
[[nodiscard]] RVSETTINGS_API IUnknown* pCreate_Settings_Host() noexcept;
