// Everything the layer supplies of the Win32, OLE Automation and run-time-library names.
#pragma once

#include "crttime.h"
#include "oledate.h"
#include "types.h"
