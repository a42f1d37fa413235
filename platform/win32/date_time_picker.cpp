#include "date_time_picker.h"

#include <chrono>
#include <ctime>

#include "crttime.h"
#include "locale.h"
#include "paint.h"
#include "rectangle.h"
#include "text_metrics.h"
#include "window_place.h"
#include "window_state.h"
#include "window_update.h"

namespace {

constexpr SYSTEMTIME kFirstShown = {1752, 9, 4, 14, 0, 0, 0, 0};
// The day before is the bound: below zero, a later time of day is a lesser number.
constexpr DATE kDayBeforeFirst = -53798.0;
constexpr DATE kLastShown = 2958465.0;

constexpr int kMargin = 4;
constexpr int kButton = 17;  // at the right edge
constexpr std::string_view kArrow = "####### .##### ..### ...#";

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
            case WM_PAINT:
                Paint();
                return 0;
            case WM_ENABLE:
                rv::Invalidate(*this, true);
                return 0;
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
        rv::Invalidate(*this, true);
        return true;
    }

    int Text_Color() const noexcept {
        return rv::Is_Disabled(*this) ? COLOR_GRAYTEXT : COLOR_WINDOWTEXT;
    }

    void Paint() noexcept {
        const rv::Painting painting(*this);
        HDC const context = painting.Context();
        RECT line = rv::Inside_Of(*this);
        rv::Fill(context, line, rv::Is_Disabled(*this) ? COLOR_BTNFACE : COLOR_WINDOW);
        rv::Draw_Frame(context, line, COLOR_BTNSHADOW);
        line = rv::Shrunk(line, 1);
        Paint_Button(context, {line.right - kButton, line.top, line.right, line.bottom});
        line.right -= kButton;
        line.left += kMargin;
        if (May_Show_None()) {
            rv::Draw_Check_Box(context, line.left, (line.top + line.bottom - rv::kBox) / 2,
                               m_ShowsDate, Text_Color());
            line.left += rv::kBox + kMargin;
        }
        char text[80];
        if (!m_ShowsDate || GetDateFormatA(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &m_Shown, nullptr,
                                           text, sizeof text) == 0)
            return;
        SetTextColor(context, GetSysColor(Text_Color()));
        rv::Draw_Line(context, line, text, rv::Align::kLeft);
    }

    void Paint_Button(HDC context, RECT box) const noexcept {
        rv::Fill(context, box, COLOR_BTNFACE);
        DrawEdge(context, &box, EDGE_RAISED, BF_RECT);
        rv::Draw_Figure(context, box.left + 5, (box.top + box.bottom) / 2 - 2, kArrow,
                        Text_Color());
    }

    bool m_ShowsDate = true;
    SYSTEMTIME m_Shown = Present_Moment();
};

}  // namespace

rv::Window* rv::Make_Date_Time_Picker() noexcept {
    return new (std::nothrow) DateTimePicker;
}

BOOL InitCommonControlsEx(const INITCOMMONCONTROLSEX* families) noexcept {
    constexpr DWORD kHere = ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES | ICC_DATE_CLASSES;
    return families->dwSize == sizeof *families && families->dwICC != 0 &&
           (families->dwICC & ~kHere) == 0;
}
