// Paths and numbers as text.
//
// Reports go to pProgrammer_Error, file "SdkUtil":
//   12  pCombine_File_Path: a pointer is null
//   13  pCombine_File_Path: a part is empty
//   25  pGet_App_Data_Path: there is no common folder, or the one below it cannot be made
// What needs memory throws CMemoryException* when there is none. Nothing is shared: any thread.
#pragma once

#include "../frame/RVString.h"
#include "../frame/export.h"

// Both parts with a backslash between them, also on systems that separate otherwise (their layers
// take both); a slash is an ordinary character here. One backslash at the end of `first` or at the
// beginning of `second` serves, and of two only one stays:
//
//     C:\a and b.txt,  C:\a\ and b.txt,  C:\a and \b.txt,  C:\a\ and \b.txt:  C:\a\b.txt
//
// Where a pointer is null or a part is empty: `first` alone, with nothing added; the empty text for
// null.
RVUTILS_API RVString pCombine_File_Path(const RVString* first, const RVString* second);

// The folder of the suite's data that all users of the machine share, without a separator at its
// end. It is made when it is missing. False when that fails: `path` is as it was when the machine
// has no such folder, else it holds the path. Without memory it is as it was, too.
//
// Where it lies the system knows, and on Linux the environment: see SHGetSpecialFolderPathA.
RVUTILS_API bool pGet_App_Data_Path(RVString& path);

// Replaces `text` by the number as SQL takes it, the same in every locale: digits and at most one
// point, with a leading "-" below zero; no exponent, no thousands separators, no closing point.
//
// The number is the one that the fewest digits tell apart from all other doubles (0.1 + 0.2 is
// 0.30000000000000004), rounded at the 15th decimal, halves away from zero, and then cut to 15
// digits, with zeros in the place of those before the point that are cut off. So 0.1 + 0.2 gives
// 0.3, and 19.99 gives 19.99. What lies between -1e-14 and 1e-14 gives 0; infinities, and what is
// no number, give NULL. The result is always true.
RVUTILS_API bool pSQL_Double_To_String(RVString& text, double value);
