// An application's language, from its start to its end.
//
// Reports go to pProgrammer_Error, file "langsprt"; each operation goes on after one:
//   11  the instance is null
//   12  the application's tag, or the manager, is null
//   13  the tag has no characters, or more than four
// What needs memory throws CMemoryException* when there is none. Start and end must not overlap
// with any use of the loader.
#pragma once

#include "../frame/export.h"
#include "RVResourceLoader.h"

// Finds the directory of the application's language files, opens the best language in it, and has
// the loader borrow the manager under the module number 0xFFFFFFFF.
//
// The directories, in this order; the two values are those of "Application Settings" under
// HKEY_LOCAL_MACHINE, "Software\ZOR Asset Care\ZOR Plant Workbench", and one that is empty or not
// there is left out:
//   1. LriPath\.
//   2. AppPath\.
//   3. AppPath\..\..\language
//   4. the current directory
//   5. ..\..\language
// In each of them, the languages: the user's, the system's, English of the United States (0x409).
// The first that opens is it, so a directory with the last of them comes before a later directory
// with the first.
//
// A number other than 0 for LiveMode under [Translation] in the custom.ini of the directory that
// served switches live update on.
//
// `application`: the tag in the names of the language files, 1 to 4 characters. `instance`: the
// module with the untranslated items. True: `manager` is a new one, which ends with
// pCleanup_Language_Support. False when no language opens: it is null, and the loader as it was.
RVUTILS_API bool pInit_Language_Support(RVResourceLoader& loader, RVLanguageManager*& manager,
                                        const char* application, HINSTANCE instance);

// Passes on a message that the application's window got under the number of the language tools'
// message (rvGet_Language_Tools_Message_Id). `first`, `second`: the message's parameters. True when
// the manager knows it as its own; it needs no further handling then. With 1 in the high word of
// `first`, the manager takes in what has changed in its files.
RVUTILS_API bool pHandle_Language_Message(RVLanguageManager* manager, ULONG first, ULONG second);

// Ends the manager, unless it is null, and leaves the loader without manager, module number and
// instance.
RVUTILS_API void pCleanup_Language_Support(RVResourceLoader& loader, RVLanguageManager*& manager);
