// Texts as dates and times of several locales: the encoding of the thread makes no difference, and
// a moment that was read is formatted as texts that read back as the same.
#include <RVUtils/winapi.h>
#include <locale.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>
#include <vector>

#include "platform/display_text.h"
#include "test_locales.h"

namespace {

// As many as are kept. Those that cannot be built here count as C.
constexpr const char* kNames[] = {"en_US.UTF-8", "de_DE.ISO-8859-1", "es_ES.UTF-8", "fi_FI.UTF-8",
                                  "fa_IR.UTF-8", "th_TH.UTF-8",      "ja_JP.UTF-8", "lzh_TW.UTF-8"};

void Check(bool right) {
    if (!right) std::abort();
}

// The number that a text reads as, in a thread of that encoding; 1e9 when it is refused.
DATE Number_Of(const std::string& text, ULONG flags, locale_t encoding) {
    const locale_t before = uselocale(encoding);
    const std::wstring wide = rv_test::Widen(text);
    // An exact copy, so that a sanitizer sees a character too many.
    const std::vector<wchar_t> exact(wide.c_str(), wide.c_str() + wide.size() + 1);
    DATE number = 1e9;
    const HRESULT status = VarDateFromStr(exact.data(), LOCALE_USER_DEFAULT, flags, &number);
    uselocale(before);
    Check(status == S_OK || (status == DISP_E_TYPEMISMATCH && number == 1e9));
    return number;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const rv_test::TestLocales s_Locales(kNames);
    static const locale_t s_Ascii = newlocale(LC_CTYPE_MASK, "C", nullptr);
    static const locale_t s_Utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    if (size == 0 || size > 255) return 0;
    setenv("LC_ALL", kNames[data[0] % std::size(kNames)], 1);
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    for (ULONG flags = 0; flags < 3; ++flags) {
        const DATE number = Number_Of(text, flags, s_Ascii);
        Check(number == Number_Of(text, flags, s_Utf8));
        if (number == 1e9) continue;
        Check(flags != VAR_DATEVALUEONLY || number == std::trunc(number));
        Check(flags != VAR_TIMEVALUEONLY || (number >= 0 && number < 1));
        const rv_test::Form form = rv_test::Form_Of(number);
        const std::string moment = rv_test::Date_Text(form) + ' ' + rv_test::Time_Text(form);
        Check(Number_Of(moment, 0, s_Ascii) == number);
    }
    return 0;
}
