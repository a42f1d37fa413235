// The wait cursor of a scope.
#pragma once

#include "../frame/export.h"

// Shows the wait cursor while one lives, through the application object; without that, nothing
// happens. Belongs to the thread of the user interface.
//
//     RVWaitCursor wait;
//     Sort_Everything();
//
// An exception of the class library that ends the wait is shown in a message box and goes no
// further.
class RVUTILS_API RVWaitCursor {
public:
    RVWaitCursor();
    RVWaitCursor(const RVWaitCursor&) = delete;
    RVWaitCursor& operator=(const RVWaitCursor&) = delete;
    virtual ~RVWaitCursor();

    // Has no effect.
    void Restore();
};
