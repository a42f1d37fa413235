// Programmer errors are no findings: a target that makes them on purpose keeps them off the log.
#pragma once

#include <RVUtils/ErrorSink.h>

namespace rv_fuzz {

inline const RVErrorSink g_LoudSink = pSet_Programmer_Error_Sink(
    {[](void*, unsigned int, const char*, ULONG) {}, [](void*, ULONG, const char*) {}, nullptr});

}  // namespace rv_fuzz
