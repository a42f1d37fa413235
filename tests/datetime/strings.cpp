// What strings.rc says, where programs have no resources.
#include <RVUtils/winapi.h>

namespace {

constexpr rv::StringResource kStrings[] = {{55296, "No moment of this application"}};
rv::StringTable g_Strings = {kStrings, 1};
[[maybe_unused]] const bool g_Registered = (rv::Register_Application_Strings(g_Strings), true);

}  // namespace
