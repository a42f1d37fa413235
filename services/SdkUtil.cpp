#include "SdkUtil.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>
#include <utility>

#include "../frame/RVDev.h"
#include "../frame/SuiteConstants.h"
#include "../platform/winapi.h"

namespace {

constexpr unsigned int kNoPointer = 12;
constexpr unsigned int kWrongText = 13;
constexpr unsigned int kMissing = 25;

void Report(unsigned int code, ULONG line) noexcept {
    pProgrammer_Error(code, "SdkUtil", line, true);
}

constexpr char kSeparator = '\\';

constexpr int kMostDigits = 15;
constexpr int kMostDecimals = 15;
constexpr double kZeroBand = 1e-14;
// Below it, a whole number has no more digits than count.
constexpr double kWholeLimit = 1e15;

// No copy is longer. All take as much, since a constant length needs no call; what is too much is
// written over, or stands behind the end.
constexpr std::size_t kCopied = 16;

// A number above zero: 0.DIGITS times ten to the power of `point`.
struct Decimal {
    // Those of the shortest text that reads back as `value`: D.DDDDe+XX, the point missing without
    // a fraction. The first digit takes the place of the point, which spares a copy.
    explicit Decimal(double value) noexcept {
        const char* const end =
            std::to_chars(text, text + sizeof text, value, std::chars_format::scientific).ptr;
        const char* const mark = end - (end[-4] == 'e' ? 4 : 5);
        count = std::max(static_cast<int>(mark - digits), 1);
        int power = 0;
        for (const char* at = mark + 2; at != end; ++at)
            power = 10 * power + (*at - '0');
        point = (mark[1] == '-' ? -power : power) + 1;
        digits[0] = text[0];
    }

    char text[3 * kCopied];
    char* const digits = text + 1;
    int count;
    int point;
};

// Halves go away from zero.
void Round_To_Decimals(Decimal& decimal) noexcept {
    const int kept = decimal.point + kMostDecimals;
    if (decimal.count <= kept) return;
    const bool up = decimal.digits[kept] >= '5';
    decimal.count = kept;
    if (!up) return;
    int last = kept - 1;
    while (last >= 0 && decimal.digits[last] == '9')
        decimal.digits[last--] = '0';
    if (last >= 0) {
        ++decimal.digits[last];
        return;
    }
    decimal.digits[0] = '1';
    decimal.count = 1;
    ++decimal.point;
}

void Cut_Off(Decimal& decimal) noexcept {
    decimal.count = std::min(decimal.count, kMostDigits);
    while (decimal.count > 1 && decimal.digits[decimal.count - 1] == '0')
        --decimal.count;
}

char* Add(char* to, const char* digits, int count) noexcept {
    std::memcpy(to, digits, kCopied);
    return to + count;
}

// Up to as many as a copy takes.
char* Add_Few_Zeros(char* to, int count) noexcept {
    std::memset(to, '0', kCopied);
    return to + count;
}

char* Write(char* to, const Decimal& decimal) noexcept {
    if (decimal.point >= decimal.count) {
        const auto zeros = static_cast<std::size_t>(decimal.point - decimal.count);
        return static_cast<char*>(std::memset(Add(to, decimal.digits, decimal.count), '0', zeros)) +
               zeros;
    }
    if (decimal.point > 0) {
        to = Add(to, decimal.digits, decimal.point);
        *to++ = '.';
        return Add(to, decimal.digits + decimal.point, decimal.count - decimal.point);
    }
    *to++ = '0';
    *to++ = '.';
    return Add(Add_Few_Zeros(to, -decimal.point), decimal.digits, decimal.count);
}

}  // namespace

RVString pCombine_File_Path(const RVString* first, const RVString* second) {
    if (!first || !second) {
        Report(kNoPointer, __LINE__);
        return first ? *first : RVString();
    }
    RVString path(*first);
    if (first->IsEmpty() || second->IsEmpty()) {
        Report(kWrongText, __LINE__);
        return path;
    }
    if (path[path.GetLength() - 1] != kSeparator) path += kSeparator;
    const int skipped = second->GetAt(0) == kSeparator ? 1 : 0;
    path.Append(second->GetString() + skipped, second->GetLength() - skipped);
    return path;
}

bool pGet_App_Data_Path(RVString& path) {
    char folder[1024];
    if (!SHGetSpecialFolderPathA(nullptr, folder, CSIDL_COMMON_APPDATA, TRUE)) {
        Report(kMissing, __LINE__);
        return false;
    }
    RVString whole(folder);
    whole += rv::kApplicationDataFolder;
    path = std::move(whole);
    const int error = SHCreateDirectoryExA(nullptr, path, nullptr);
    if (error == ERROR_SUCCESS || error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS)
        return true;
    Report(kMissing, __LINE__);
    return false;
}

bool pSQL_Double_To_String(RVString& text, double value) {
    // A sign and every digit of the largest number.
    char buffer[std::numeric_limits<double>::max_exponent10 + 2 + kCopied];
    const double size = std::fabs(value);
    char* end = buffer;
    if (!(size <= std::numeric_limits<double>::max())) {
        constexpr std::string_view kNoNumber = "NULL";
        end += kNoNumber.copy(buffer, kNoNumber.size());
    } else if (size < kZeroBand) {
        *end++ = '0';
    } else if (size < kWholeLimit && size == std::trunc(size)) {
        end = std::to_chars(buffer, buffer + sizeof buffer, static_cast<long long>(value)).ptr;
    } else {
        if (value < 0) *end++ = '-';
        Decimal decimal(size);
        Round_To_Decimals(decimal);
        Cut_Off(decimal);
        end = Write(end, decimal);
    }
    text.SetString(buffer, static_cast<int>(end - buffer));
    return true;
}
