// All bytes of a file.
#pragma once

#include <cstddef>

#include "../../platform/heap.h"
#include "../../platform/mfc/CString.h"

namespace rv {

enum class FileResult { kRead, kMissing, kRefused };

// Reads the file `path` of up to 256 MiB. `fault` tells in one line why it was refused. Throws
// CMemoryException* when there is no memory.
[[nodiscard]] FileResult Read_Whole_File(const char* path, HeapText& bytes, std::size_t& size,
                                         CString& fault);

}  // namespace rv
