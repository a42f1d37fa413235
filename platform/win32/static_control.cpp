#include "static_control.h"

#include "owned_text.h"
#include "paint.h"
#include "window_place.h"
#include "window_state.h"
#include "window_update.h"

namespace {

constexpr DWORD kPlaceMask = 0x3;

class Static final : public rv::Window {
public:
    LRESULT Receive(UINT message, WPARAM first, LPARAM second) noexcept override {
        switch (message) {
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
    void Paint() noexcept {
        const rv::Painting painting(*this);
        HDC const context = painting.Context();
        const RECT inside = rv::Inside_Of(*this);
        FillRect(context, &inside, rv::Ask_Colors(*this, WM_CTLCOLORSTATIC, context));
        if (rv::Is_Disabled(*this)) SetTextColor(context, GetSysColor(COLOR_GRAYTEXT));
        const DWORD place = m_Style & kPlaceMask;
        const rv::Align align = place == SS_CENTER  ? rv::Align::kCenter
                                : place == SS_RIGHT ? rv::Align::kRight
                                                    : rv::Align::kLeft;
        const std::string_view text = rv::View_Of(m_Text.get());
        if (m_Style & SS_NOPREFIX) return rv::Draw_Lines(context, inside, text, align);
        const rv::Caption caption(text);
        rv::Draw_Lines(context, inside, caption.Text(), align, caption.Marked());
    }
};

}  // namespace

rv::Window* rv::Make_Static() noexcept {
    return new (std::nothrow) Static;
}
