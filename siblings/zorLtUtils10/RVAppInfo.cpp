// The stand-in of zorLtUtils10: what it holds of the facts about an application.
#include "../../frame/RVAppInfo.h"

RVAppInfo::~RVAppInfo() = default;
