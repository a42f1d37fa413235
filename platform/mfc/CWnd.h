// Windows.
#pragma once

#include <cstdint>

#include "../export.h"
#include "../winapi.h"
#include "CCmdTarget.h"

// A child's question for its colours, whichever kind of control it is, as it is given back.
inline constexpr UINT kColorQuestion = 0x19;

// An object that owns a window, or none. The window ends with the object, and may end before it,
// with its parent; the object then has none.
//
// The window's messages, from the end of CreateEx or SubclassWindow on, are answered by the
// object: by the message map of its class, else by the window's own class. What a child asks or
// tells its parent about itself goes back to the child first, where both have objects, under
// WM_REFLECT_BASE. An exception that leaves an answer goes to the application object and ends
// there; the answer is then 0.
//
// An object belongs to the thread that made its window. Only FromHandle throws, CMemoryException*.
class RVPLATFORM_API CWnd : public CCmdTarget {
public:
    CWnd() noexcept;
    ~CWnd() override;

    // The object of a window. One that nobody has made an object for is given a plain one, which
    // lasts until some time after the window, and owns nothing. Null for null.
    static CWnd* FromHandle(HWND window);
    // Null also for a window that nobody has made an object for.
    static CWnd* FromHandlePermanent(HWND window) noexcept;

    // Makes the window, of a class that the system knows. `place` is in pixels, of the screen or,
    // with WS_CHILD, of the parent's inside; only without that may `parent` be null. The window
    // ends with its parent; without WS_CHILD, with the one outside of all children that it is in.
    // `id` is a child's; 0 for other windows.
    // FALSE on failure, with the reason for GetLastError: ERROR_INVALID_PARAMETER for an object
    // that has a window, which it keeps.
    virtual BOOL CreateEx(DWORD extended_style, const char* class_name, const char* text,
                          DWORD style, const RECT& place, CWnd* parent, UINT id);
    // FALSE when there was no window.
    virtual BOOL DestroyWindow();

    // Becomes the object of a window of this thread that has none, without its messages. FALSE,
    // and nothing happens, for an object that has a window and for any other window.
    BOOL Attach(HWND window) noexcept;
    // Gives the window up, which lives on; what SubclassWindow did is undone. Null for none.
    HWND Detach() noexcept;

    // As Attach, and the window's messages are the object's from now on.
    BOOL SubclassWindow(HWND window) noexcept;
    // The same for the control `id` of a dialog.
    BOOL SubclassDlgItem(UINT id, CWnd* parent) noexcept;

    HWND GetSafeHwnd() const noexcept { return m_hWnd; }

    HWND m_hWnd = nullptr;  // null without a window

    // Answers a message; the map is asked first.
    virtual LRESULT WindowProc(UINT message, WPARAM first, LPARAM second);

protected:
    // Answers a message by the map. FALSE for one that is not in there.
    virtual BOOL OnWndMsg(UINT message, WPARAM first, LPARAM second, LRESULT* result);
    // Answers what the parent was told about this window. FALSE leaves it to the parent.
    virtual BOOL OnChildNotify(UINT message, WPARAM first, LPARAM second, LRESULT* result);
    // Hands the message that is being answered to the window's own class.
    LRESULT Default() noexcept;

    void OnDestroy();

    DECLARE_MESSAGE_MAP()

private:
    friend class WindowMap;

    static LRESULT Receive(HWND window, UINT message, WPARAM first, LPARAM second) noexcept;
    LRESULT Pass_On(UINT message, WPARAM first, LPARAM second) noexcept;
    BOOL Answer(const AFX_MSGMAP_ENTRY& wanted, WPARAM first, LPARAM second, LRESULT& result);
    void Learn(const AFX_MSGMAP* map) noexcept;
    HWND Forget() noexcept;

    CWnd* m_NextInBucket = nullptr;
    const AFX_MSGMAP* m_KnownMap = nullptr;
    std::uint64_t m_KnownMessages = 0;  // a bit for each kind that this map and its bases have
    WNDPROC m_pfnSuper = nullptr;       // of a window whose messages are the object's
};

namespace rv {

// What stands in message maps: the calls of operations by the arguments that they take.

template <class Target, auto Operation>
BOOL Answer_Plain(CCmdTarget& target, WPARAM, LPARAM, LRESULT&) {
    (static_cast<Target&>(target).*Operation)();
    return TRUE;
}

template <class Target, auto Operation>
BOOL Answer_With_Window(CCmdTarget& target, WPARAM window, LPARAM, LRESULT&) {
    (static_cast<Target&>(target).*Operation)(CWnd::FromHandle(reinterpret_cast<HWND>(window)));
    return TRUE;
}

template <class Target, auto Operation>
BOOL Answer_Notice(CCmdTarget& target, WPARAM, LPARAM notice, LRESULT& result) {
    (static_cast<Target&>(target).*Operation)(reinterpret_cast<NMHDR*>(notice), &result);
    return TRUE;
}

template <class Target, auto Operation>
BOOL Answer_Message(CCmdTarget& target, WPARAM first, LPARAM second, LRESULT& result) {
    result = (static_cast<Target&>(target).*Operation)(first, second);
    return TRUE;
}

}  // namespace rv

// void OnDestroy()
#define ON_WM_DESTROY() {WM_DESTROY, 0, 0, &rv::Answer_Plain<ThisClass, &ThisClass::OnDestroy>},
// void OnPaint(), which paints with a CPaintDC
#define ON_WM_PAINT() {WM_PAINT, 0, 0, &rv::Answer_Plain<ThisClass, &ThisClass::OnPaint>},
// void OnKillFocus(CWnd* next)
#define ON_WM_KILLFOCUS() \
    {WM_KILLFOCUS, 0, 0, &rv::Answer_With_Window<ThisClass, &ThisClass::OnKillFocus>},
// LRESULT operation(WPARAM, LPARAM)
#define ON_MESSAGE(message, operation) {message, 0, 0, &rv::Answer_Message<ThisClass, operation>},
// void operation(), for what a control with this id tells by WM_COMMAND
#define ON_CONTROL(code, id, operation) \
    {WM_COMMAND, code, id, &rv::Answer_Plain<ThisClass, operation>},
#define ON_BN_CLICKED(id, operation) ON_CONTROL(BN_CLICKED, id, operation)
// void operation(NMHDR* notice, LRESULT* result), for what a control tells by WM_NOTIFY
#define ON_NOTIFY(code, id, operation) \
    {WM_NOTIFY, code, id, &rv::Answer_Notice<ThisClass, operation>},
// The same in the control itself
#define ON_NOTIFY_REFLECT(code, operation) \
    {WM_REFLECT_BASE + WM_NOTIFY, code, 0, &rv::Answer_Notice<ThisClass, operation>},
