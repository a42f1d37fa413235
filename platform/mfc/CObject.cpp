#include "CObject.h"

CObject::~CObject() = default;
