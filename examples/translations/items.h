// Where the program's items are, and their numbers.
#pragma once

#define IDS_TITLE 1
#define IDS_WELCOME 2
#define IDS_HELP 3
#define IDB_FLAG 130

#if !defined(RC_INVOKED)
#include <RVUtils/winapi.h>

// The module with the untranslated items.
HINSTANCE Items_Module();
#endif
