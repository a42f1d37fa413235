#include "dialog.h"

#include "button.h"
#include "device_context.h"
#include "window_class.h"
#include "window_object.h"
#include "window_place.h"

namespace {

using rv::Window;

// The type of a push button that looks the default or could; any other number for another window.
DWORD Push_Button_Type(const Window& window) noexcept {
    constexpr DWORD kNone = 0xF;
    return window.m_Class->make == &rv::Make_Button ? window.m_Style & 0xF : kNone;
}

class Dialog final : public Window {
public:
    LRESULT Receive(UINT message, WPARAM first, LPARAM second) noexcept override {
        switch (message) {
            case DM_GETDEFID:
                return Default_Id();
            case DM_SETDEFID:
                m_DefaultId = LOWORD(first);
                Move_Default_Look();
                return TRUE;
            case WM_ERASEBKGND:
                Erase(reinterpret_cast<HDC>(first));
                return TRUE;
            default:
                return Default(message, first, second);
        }
    }

private:
    // In the colours that it chooses itself.
    void Erase(HDC context) noexcept {
        const auto first = reinterpret_cast<WPARAM>(context);
        const auto second = reinterpret_cast<LPARAM>(Handle());
        LRESULT brush = rv::Send(*this, WM_CTLCOLORDLG, first, second);
        if (brush == 0) brush = Default(WM_CTLCOLORDLG, first, second);
        const RECT inside = rv::Inside_Of(*this);
        FillRect(context, &inside, reinterpret_cast<HBRUSH>(brush));
    }

    LRESULT Default_Id() const noexcept {
        WORD id = m_DefaultId;
        for (const Window* at = First_Child(); at && id == 0; at = at->Next_Sibling()) {
            if (Push_Button_Type(*at) == BS_DEFPUSHBUTTON) id = LOWORD(at->m_Id);
        }
        return id == 0 ? 0 : MAKELONG(id, DC_HASDEFID);
    }

    void Move_Default_Look() noexcept {
        bool is_found = false;
        for (Window* at = First_Child(); at; at = at->Next_Sibling()) {
            const DWORD type = Push_Button_Type(*at);
            const bool is_default = !is_found && LOWORD(at->m_Id) == m_DefaultId;
            is_found |= is_default;
            const DWORD wanted = is_default ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
            if (type != wanted && (type == BS_DEFPUSHBUTTON || type == BS_PUSHBUTTON))
                at->Receive(BM_SETSTYLE, wanted, TRUE);
        }
    }

    WORD m_DefaultId = IDOK;
};

}  // namespace

rv::Window* rv::Make_Dialog() noexcept {
    return new (std::nothrow) Dialog;
}
