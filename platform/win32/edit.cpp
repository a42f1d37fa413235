#include "edit.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "input.h"
#include "owned_text.h"
#include "paint.h"
#include "rectangle.h"
#include "text_metrics.h"
#include "window_data.h"
#include "window_object.h"
#include "window_place.h"
#include "window_state.h"
#include "window_update.h"

namespace {

constexpr int kMargin = 3;

class Edit final : public rv::Window {
public:
    LRESULT Receive(UINT message, WPARAM first, LPARAM second) noexcept override {
        switch (message) {
            case WM_SETTEXT:
                if (!Default(message, first, second)) return FALSE;
                m_Mark = 0;
                Tell_Change();
                return TRUE;
            case WM_CHAR:
                if (first == VK_BACK ? Take_Out() : Put_In(static_cast<char>(first))) {
                    rv::Invalidate(*this, true);
                    Tell_Change();
                }
                return 0;
            case WM_PAINT:
                Paint();
                return 0;
            case WM_LBUTTONDOWN:
                SetFocus(Handle());
                return 0;
            case WM_ENABLE:
            case WM_SETFOCUS:
            case WM_KILLFOCUS:
                rv::Invalidate(*this, true);
                return 0;
            default:
                return Default(message, first, second);
        }
    }

private:
    void Tell_Change() noexcept {
        rv::Send_Command(*this, EN_UPDATE);
        rv::Send_Command(*this, EN_CHANGE);
    }

    bool Put_In(char character) noexcept {
        if (static_cast<unsigned char>(character) < ' ') return false;
        const std::size_t length = m_Text ? std::strlen(m_Text.get()) : 0;
        rv::HeapText longer(static_cast<char*>(rv::Heap_Allocate(length + 2)));
        if (!longer) return false;
        if (m_Mark != 0) std::memcpy(longer.get(), m_Text.get(), m_Mark);
        longer[m_Mark] = character;
        if (m_Text) std::memcpy(&longer[m_Mark + 1], &m_Text[m_Mark], length - m_Mark);
        longer[length + 1] = '\0';
        m_Text = std::move(longer);
        ++m_Mark;
        return true;
    }

    bool Take_Out() noexcept {
        if (m_Mark == 0) return false;
        char* const rest = &m_Text[m_Mark];
        std::memmove(rest - 1, rest, std::strlen(rest) + 1);
        --m_Mark;
        return true;
    }

    void Paint() noexcept {
        const rv::Painting painting(*this);
        HDC const context = painting.Context();
        const RECT inside = rv::Inside_Of(*this);
        const bool is_disabled = rv::Is_Disabled(*this);
        FillRect(context, &inside,
                 rv::Ask_Colors(*this, is_disabled ? WM_CTLCOLORSTATIC : WM_CTLCOLOREDIT, context));
        if (is_disabled) SetTextColor(context, GetSysColor(COLOR_GRAYTEXT));
        RECT line = rv::Shrunk(inside, kMargin);
        line.bottom = line.top + rv::kLineHeight;
        const std::string_view text = rv::View_Of(m_Text.get());
        const int mark = rv::Width_Of(text.substr(0, m_Mark));
        // The mark stays in sight.
        line.left -= std::max(mark + 1 - rv::Width_Of(line), 0);
        SetBkMode(context, TRANSPARENT);
        ExtTextOutA(context, line.left, line.top, 0, nullptr, text.data(),
                    static_cast<UINT>(text.size()), nullptr);
        if (GetFocus() != Handle()) return;
        line.left += mark;
        line.right = line.left + 1;
        rv::Fill(context, line, COLOR_WINDOWTEXT);
    }

    std::size_t m_Mark = 0;
};

}  // namespace

rv::Window* rv::Make_Edit() noexcept {
    return new (std::nothrow) Edit;
}
