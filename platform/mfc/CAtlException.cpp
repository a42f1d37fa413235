#include "CAtlException.h"

namespace ATL {

void AtlThrow(HRESULT status) {
    throw CAtlException(status);
}

}  // namespace ATL
