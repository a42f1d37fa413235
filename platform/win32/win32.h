// Everything the layer supplies of the Win32, OLE Automation and run-time-library names.
#pragma once

#include "bstr.h"
#include "critical_section.h"
#include "crttime.h"
#include "date_time_picker.h"
#include "error.h"
#include "file.h"
#include "handle.h"
#include "locale.h"
#include "module.h"
#include "oledate.h"
#include "path.h"
#include "text.h"
#include "types.h"
#include "window.h"
