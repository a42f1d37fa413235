// The reports of the XML reader and the Base64 codec.
#pragma once

#include "../frame/RVDev.h"

namespace rv {

// Reports `code` for `line` of the reader's source.
inline void Report_Xml_Error(unsigned int code, ULONG line) noexcept {
    pProgrammer_Error(code, "XmlParser", line, true);
}

}  // namespace rv
