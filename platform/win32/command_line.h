// The process's command line.
#pragma once

#include "../export.h"

// The words that the process was started with, the program's name first, and a null behind them.
// They are there before anything of the program runs.
extern RVPLATFORM_API int __argc;
extern RVPLATFORM_API char** __argv;
