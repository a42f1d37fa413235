#include "date_time_picker.h"

#include <chrono>
#include <ctime>

#include "crttime.h"
#include "window_object.h"

namespace {

constexpr SYSTEMTIME kFirstShown = {1752, 9, 4, 14, 0, 0, 0, 0};
// The day before is the bound: below zero, a later time of day is a lesser number.
constexpr DATE kDayBeforeFirst = -53798.0;
constexpr DATE kLastShown = 2958465.0;

SYSTEMTIME Present_Moment() noexcept {
    using namespace std::chrono;
    const auto now = floor<milliseconds>(system_clock::now().time_since_epoch());
    const __time64_t instant = floor<seconds>(now).count();
    std::tm local;
    // The clock of the machine is far off.
    if (_localtime64_s(&local, &instant) != 0) return kFirstShown;
    const auto word = [](auto value) { return static_cast<WORD>(value); };
    return {word(local.tm_year + 1900), word(local.tm_mon + 1),  word(local.tm_wday),
            word(local.tm_mday),        word(local.tm_hour),     word(local.tm_min),
            word(local.tm_sec),         word(now.count() % 1000)};
}

// Sets the day of week. False for a form that a picker cannot show.
bool Complete(SYSTEMTIME& form) noexcept {
    const WORD milliseconds = form.wMilliseconds;
    DATE number = 0;
    if (milliseconds > 999 || !SystemTimeToVariantTime(&form, &number) ||
        !VariantTimeToSystemTime(number, &form))
        return false;
    form.wMilliseconds = milliseconds;
    return number > kDayBeforeFirst &&
           (number < kLastShown || (number == kLastShown && milliseconds == 0));
}

class DateTimePicker final : public rv::Window {
public:
    LRESULT Receive(UINT message, WPARAM first, LPARAM second) noexcept override {
        auto* const form = reinterpret_cast<SYSTEMTIME*>(second);
        switch (message) {
            case WM_CREATE:
                m_ShowsDate = !May_Show_None();
                return 0;
            case DTM_GETSYSTEMTIME:
                return Get(form);
            case DTM_SETSYSTEMTIME:
                return form && Set(first, *form);
            default:
                return Default(message, first, second);
        }
    }

private:
    bool May_Show_None() const noexcept { return (m_Style & DTS_SHOWNONE) != 0; }

    LRESULT Get(SYSTEMTIME* form) const noexcept {
        if (!form) return GDT_ERROR;
        if (!m_ShowsDate) return GDT_NONE;
        *form = m_Shown;
        return GDT_VALID;
    }

    bool Set(WPARAM kind, SYSTEMTIME form) noexcept {
        const bool is_date = kind == GDT_VALID;
        if (is_date ? !Complete(form) : kind != GDT_NONE || !May_Show_None()) return false;
        m_ShowsDate = is_date;
        if (is_date) m_Shown = form;
        return true;
    }

    bool m_ShowsDate = true;
    SYSTEMTIME m_Shown = Present_Moment();
};

}  // namespace

rv::Window* rv::Make_Date_Time_Picker() noexcept {
    return new (std::nothrow) DateTimePicker;
}

BOOL InitCommonControlsEx(const INITCOMMONCONTROLSEX* families) noexcept {
    return families->dwSize == sizeof *families && families->dwICC == ICC_DATE_CLASSES;
}
