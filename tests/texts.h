// Counted texts of the library as standard ones, and back.
#pragma once

#include <RVUtils/RVString.h>

#include <string>
#include <string_view>

namespace rv_test {

inline std::string Text(const CString& text) {
    return {text.GetString(), static_cast<std::size_t>(text.GetLength())};
}

inline RVString To_RVString(std::string_view text) {
    return CString(text.data(), static_cast<int>(text.size()));
}

}  // namespace rv_test
