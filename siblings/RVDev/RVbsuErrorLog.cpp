// The stand-in of RVDev: what it holds of the log of errors.
#include "../../frame/RVbsuErrorLog.h"

RVbsuErrorLog::~RVbsuErrorLog() = default;
