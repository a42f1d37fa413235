#include "button.h"

#include "input.h"
#include "rectangle.h"
#include "window_object.h"
#include "window_place.h"
#include "window_state.h"
#include "window_update.h"

namespace {

constexpr DWORD kTypeMask = 0xF;

class Button final : public rv::Window {
public:
    LRESULT Receive(UINT message, WPARAM first, LPARAM second) noexcept override {
        switch (message) {
            case BM_GETCHECK:
                return m_IsChecked;
            case BM_SETCHECK:
                Set_Check(first == BST_CHECKED);
                return 0;
            case BM_SETSTYLE:
                m_Style = (m_Style & ~kTypeMask) | (static_cast<DWORD>(first) & kTypeMask);
                if (second) rv::Invalidate(*this, true);
                return 0;
            case BM_CLICK:
                Receive(WM_LBUTTONDOWN, MK_LBUTTON, 0);
                if (!Has_Ended()) Receive(WM_LBUTTONUP, 0, 0);
                return 0;
            case WM_LBUTTONDOWN:
                SetFocus(Handle());
                Push(true);
                return 0;
            case WM_LBUTTONUP:
                Release(Is_Inside(second));
                return 0;
            case WM_KEYDOWN:
                if (first == VK_SPACE) Push(true);
                return 0;
            case WM_KEYUP:
                if (first == VK_SPACE) Release(true);
                return 0;
            case WM_SETFOCUS:
            case WM_ENABLE:
                rv::Invalidate(*this, false);
                return 0;
            case WM_KILLFOCUS:
                Push(false);
                return 0;
            default:
                return Default(message, first, second);
        }
    }

private:
    DWORD Type() const noexcept { return m_Style & kTypeMask; }

    bool Is_Inside(LPARAM second) const noexcept {
        const POINT place = rv::Place_Of(second);
        return rv::Contains(rv::Inside_Of(*this), place.x, place.y);
    }

    void Set_Check(bool check) noexcept {
        m_IsChecked = check;
        rv::Invalidate(*this, false);
    }

    void Push(bool push) noexcept {
        m_IsPushed = push;
        rv::Invalidate(*this, false);
    }

    void Release(bool click) noexcept {
        if (!m_IsPushed) return;
        Push(false);
        if (!click) return;
        if (Type() == BS_AUTOCHECKBOX) Set_Check(!m_IsChecked);
        if (Type() == BS_AUTORADIOBUTTON) Choose();
        rv::Send_Command(*this, BN_CLICKED);
    }

    // Of neighbouring radio buttons, one is checked.
    void Choose() noexcept {
        for (Window* at = Previous_Sibling(); Clear(at); at = at->Previous_Sibling()) {
        }
        for (Window* at = Next_Sibling(); Clear(at); at = at->Next_Sibling()) {
        }
        Set_Check(true);
    }

    // False at the end of the group.
    static bool Clear(Window* window) noexcept {
        auto* const button = dynamic_cast<Button*>(window);
        if (!button || button->Type() != BS_AUTORADIOBUTTON) return false;
        button->Set_Check(false);
        return true;
    }

    bool m_IsChecked = false;
    bool m_IsPushed = false;
};

}  // namespace

rv::Window* rv::Make_Button() noexcept {
    return new (std::nothrow) Button;
}
