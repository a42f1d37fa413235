// What becomes of the window once it is shown; differs with the platform.
#pragma once

#include <string>
#include <vector>

#include "window.h"

namespace workbench {

// Gives the program's exit code. `arguments`: those behind the document.
int Run(const Window& window, const std::vector<std::string>& arguments);

}  // namespace workbench
