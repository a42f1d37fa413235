// Where column widths are kept from run to run.
#pragma once

#include "../frame/RVString.h"
#include "../platform/winapi.h"

namespace rv {

enum class StoreAnswer { kNoStore, kNothing, kText };

// Reads the widths of a list, or writes them, in their packed form, through the settings host that
// an application gave. Without a store nothing is written. Both throw CMemoryException*.
StoreAnswer Read_Column_Widths(IUnknown& host, const RVString& list_name, RVString& packed);
void Write_Column_Widths(IUnknown& host, const RVString& list_name, const RVString& packed);

}  // namespace rv
