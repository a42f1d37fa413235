// The reports of the XML reader and the Base64 codec.
#pragma once

#include <source_location>

#include "../frame/RVDev.h"

namespace rv {

// Reports `code` for the line of the call.
inline void Report_Xml_Error(unsigned int code,
                             std::source_location place = std::source_location::current()) {
    pProgrammer_Error(code, "XmlParser", place.line(), true);
}

}  // namespace rv
