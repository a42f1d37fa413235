// Database text: taken, and read, exactly as the C library and the standard calendar read its
// fields; what was taken comes back as 14 digits.
#include <RVUtils/rvdatetm.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "silence.h"

namespace {

void Check(bool right) {
    if (!right) std::abort();
}

// The digits of a good text, empty for any other.
std::string Digits(const std::string& text) {
    if (text.size() != 14) return {};
    const auto field = [&text](std::size_t from, std::size_t length) {
        return std::atoi(text.substr(from, length).c_str());
    };
    const int year = field(0, 4), month = field(4, 2), day = field(6, 2);
    const int hour = field(8, 2), minute = field(10, 2), second = field(12, 2);
    const bool time =
        hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 60;
    if (!time || year < 100 || month < 1 || day < 1) return {};
    const std::chrono::year_month_day date(std::chrono::year(year),
                                           std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day)));
    if (!date.ok()) return {};
    char digits[80];
    std::snprintf(digits, sizeof digits, "%04d%02d%02d%02d%02d%02d", year, month, day, hour, minute,
                  second);
    return digits;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::string digits = Digits(bytes);
    RVString text(CString(bytes.data(), static_cast<int>(size)));
    Check(RVDateTime::Validate_Db_Value(text) == !digits.empty());

    RVDateTime object;
    const bool taken = object.Set_Db_Value(text);
    Check(taken == (!digits.empty() || bytes.empty()));
    object.Get_Db_Value(text);
    Check(text.GetString() == (!taken          ? "18991230000000"
                               : bytes.empty() ? "19800101000001"
                                               : digits));
    return 0;
}
