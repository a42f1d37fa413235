// What the library requires of the sibling library RVDev: reports of programmer errors.
//
// A programmer error is a breach of contract, or a failure that the caller cannot mend. Bad input
// is none: it is told by a result.
#pragma once

#include "../platform/winapi.h"
#include "export.h"

// Takes the report of a programmer error.
//
// `code`: what happened, by the table of the reporting class. `source_file`: short name of the
// source file, with static lifetime. `line`: line of the report in it. `show` is true at every
// call of the library. It returns; the result has no meaning for the reporting operation, which
// goes on as its own header says. Never throws. Any thread.
RVDEV_API bool pProgrammer_Error(unsigned int code, const char* source_file, ULONG line,
                                 bool show) noexcept;

// Takes a trace of the given level. `text` is copied if it is kept. Never throws. Any thread.
RVDEV_API void pProgrammer_Trace(ULONG level, const char* text) noexcept;
