// What the library requires of the sibling library RVDev: the log of errors.
#pragma once

#include "export.h"

// Has nothing to copy. RVDev holds the class; its copies are made by this library.
class RVDEV_API RVbsuErrorLog {
public:
    RVbsuErrorLog() = default;
    RVUTILS_API RVbsuErrorLog(const RVbsuErrorLog& other);
    RVUTILS_API RVbsuErrorLog& operator=(const RVbsuErrorLog& other);
    virtual ~RVbsuErrorLog();
};
