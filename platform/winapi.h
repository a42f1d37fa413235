// The one door to the Win32 names: the system's headers on Windows, our small layer elsewhere.
//
// Nothing outside platform/ asks which system it is on; it includes this and calls the platform
// by its published names.
#pragma once

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
// The headers of its parts follow the Windows one.
#include <comcat.h>
#include <commctrl.h>
#include <direct.h>
#include <oleauto.h>
#include <shlobj.h>

#include <cstdlib>
#include <ctime>
#else
#include "win32/win32.h"
#endif
