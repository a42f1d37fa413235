#include "edit.h"

#include <cstring>
#include <utility>

#include "input.h"
#include "window_data.h"
#include "window_object.h"
#include "window_state.h"
#include "window_update.h"

namespace {

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

    std::size_t m_Mark = 0;
};

}  // namespace

rv::Window* rv::Make_Edit() noexcept {
    return new (std::nothrow) Edit;
}
