// The export macros of the library and of the sibling libraries that it calls.
#pragma once

#include "../platform/export.h"

#if defined(RVUtils_EXPORTS)
#define RVUTILS_API RV_EXPORT
#else
#define RVUTILS_API RV_IMPORT
#endif

#if defined(zorLtUtils10_EXPORTS)
#define ZORLTUTILS_API RV_EXPORT
#else
#define ZORLTUTILS_API RV_IMPORT
#endif

#if defined(RVDev_EXPORTS)
#define RVDEV_API RV_EXPORT
#else
#define RVDEV_API RV_IMPORT
#endif

#if defined(zorLangMgr10_EXPORTS)
#define ZORLANGMGR_API RV_EXPORT
#else
#define ZORLANGMGR_API RV_IMPORT
#endif

#if defined(RVSettings_EXPORTS)
#define RVSETTINGS_API RV_EXPORT
#else
#define RVSETTINGS_API RV_IMPORT
#endif
