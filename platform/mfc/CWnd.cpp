#include "CWnd.h"

#include <utility>

#include "CException.h"
#include "CWinApp.h"
#include "WindowMap.h"

namespace {

// The objects of windows that nobody has made one for.
class PlainObjects {
public:
    PlainObjects() = default;
    PlainObjects(const PlainObjects&) = delete;
    PlainObjects& operator=(const PlainObjects&) = delete;
    ~PlainObjects() {
        m_Objects.Delete_If([](HWND) { return true; });
    }

    CWnd* Of(HWND window) {
        if (CWnd* const found = m_Objects.Find(window)) return found;
        if (++m_Made % kSweep == 0) m_Objects.Delete_If([](HWND old) { return !::IsWindow(old); });
        auto* const object = new CWnd;
        object->m_hWnd = window;
        m_Objects.Add(*object);
        return object;
    }

private:
    static constexpr unsigned kSweep = 64;  // so many are made before those of ended windows go

    WindowMap m_Objects = {};
    unsigned m_Made = 0;
};

struct Message {
    UINT message;
    WPARAM first;
    LPARAM second;
};
constexpr Message kNoMessage = {};

// One record, so that it is looked up once.
struct ThreadState {
    WindowMap objects;
    const Message* answered = &kNoMessage;  // for Default
};
constinit thread_local ThreadState t_Own = {};
// Each message looks here, so it is to be found without a call; of the memory for that, a library
// that is loaded late may not have enough for the record.
[[gnu::tls_model("initial-exec")]] constinit thread_local ThreadState* t_State = nullptr;

ThreadState& State() noexcept {
    if (!t_State) t_State = &t_Own;
    return *t_State;
}

class AnsweredMessage {
public:
    AnsweredMessage(ThreadState& state, UINT message, WPARAM first, LPARAM second)
        : m_State(state),
          m_Message{message, first, second},
          m_Before(std::exchange(state.answered, &m_Message)) {}
    AnsweredMessage(const AnsweredMessage&) = delete;
    AnsweredMessage& operator=(const AnsweredMessage&) = delete;
    ~AnsweredMessage() { m_State.answered = m_Before; }

private:
    ThreadState& m_State;
    const Message m_Message;
    const Message* const m_Before;
};

bool Is_Color_Question(UINT message) {
    return message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC;
}

bool Is_About_Child(UINT message) {
    return message == WM_NOTIFY || message == WM_COMMAND || message == WM_DRAWITEM ||
           Is_Color_Question(message);
}

// The child that a message to its parent is about, or null.
HWND Child_Of(UINT message, LPARAM second) {
    if (Is_Color_Question(message) || message == WM_COMMAND) return reinterpret_cast<HWND>(second);
    if (!second) return nullptr;
    if (message == WM_NOTIFY) return reinterpret_cast<const NMHDR*>(second)->hwndFrom;
    return reinterpret_cast<const DRAWITEMSTRUCT*>(second)->hwndItem;
}

// One bit; the golden ratio spreads neighbours.
std::uint64_t Kind_Of(const AFX_MSGMAP_ENTRY& entry) {
    return std::uint64_t{1} << ((entry.nMessage + 31 * entry.nCode) * 0x9E3779B9U >> 26);
}

// The first entry of the map and its bases that `is_wanted` holds true for, or null.
template <class Predicate>
const AFX_MSGMAP_ENTRY* Find_Entry(const AFX_MSGMAP* map, Predicate is_wanted) {
    for (; map; map = map->pfnGetBaseMap ? map->pfnGetBaseMap() : nullptr) {
        for (const AFX_MSGMAP_ENTRY* entry = map->lpEntries; entry->nMessage; ++entry)
            if (is_wanted(*entry)) return entry;
    }
    return nullptr;
}

}  // namespace

CWnd::CWnd() noexcept = default;

CWnd::~CWnd() {
    CWnd::DestroyWindow();
}

CWnd* CWnd::FromHandle(HWND window) {
    static thread_local PlainObjects t_PlainObjects;
    if (!window) return nullptr;
    CWnd* const object = FromHandlePermanent(window);
    return object ? object : t_PlainObjects.Of(window);
}

CWnd* CWnd::FromHandlePermanent(HWND window) noexcept {
    return window ? State().objects.Find(window) : nullptr;
}

BOOL CWnd::CreateEx(DWORD extended_style, const char* class_name, const char* text, DWORD style,
                    const RECT& place, CWnd* parent, UINT id) {
    if (::IsWindow(m_hWnd)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    // A child has its id in the place of a menu.
    HWND const window = CreateWindowExA(
        extended_style, class_name, text, style, place.left, place.top, place.right - place.left,
        place.bottom - place.top, parent ? parent->m_hWnd : nullptr,
        reinterpret_cast<HMENU>(UINT_PTR{id}), GetModuleHandleA(nullptr), nullptr);
    return window && SubclassWindow(window);
}

BOOL CWnd::DestroyWindow() {
    HWND const window = m_hWnd;
    const BOOL done = window && ::DestroyWindow(window);
    if (m_hWnd == window) Forget();
    return done;
}

BOOL CWnd::Attach(HWND window) noexcept {
    if (::IsWindow(m_hWnd) || !::IsWindow(window) || State().objects.Find(window)) return FALSE;
    Forget();
    m_hWnd = window;
    State().objects.Add(*this);
    return TRUE;
}

HWND CWnd::Detach() noexcept {
    // Where somebody else has put a procedure before this one, it has to stay.
    const auto own = reinterpret_cast<LONG_PTR>(&Receive);
    if (m_pfnSuper && GetWindowLongPtrA(m_hWnd, GWLP_WNDPROC) == own)
        SetWindowLongPtrA(m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_pfnSuper));
    return Forget();
}

HWND CWnd::Forget() noexcept {
    if (m_hWnd) State().objects.Remove(*this);
    m_pfnSuper = nullptr;
    return std::exchange(m_hWnd, nullptr);
}

BOOL CWnd::SubclassWindow(HWND window) noexcept {
    if (!Attach(window)) return FALSE;
    const auto own = reinterpret_cast<LONG_PTR>(&Receive);
    m_pfnSuper = reinterpret_cast<WNDPROC>(SetWindowLongPtrA(window, GWLP_WNDPROC, own));
    if (!m_pfnSuper) Forget();
    return m_hWnd != nullptr;
}

BOOL CWnd::SubclassDlgItem(UINT id, CWnd* parent) noexcept {
    return parent && SubclassWindow(::GetDlgItem(parent->m_hWnd, static_cast<int>(id)));
}

LRESULT CWnd::Receive(HWND window, UINT message, WPARAM first, LPARAM second) noexcept {
    ThreadState& state = State();
    CWnd* const object = state.objects.Find(window);
    if (!object) return ::DefWindowProcA(window, message, first, second);
    const AnsweredMessage answered(state, message, first, second);
    LRESULT result = 0;
    try {
        result = object->WindowProc(message, first, second);
    } catch (CException* exception) {
        AfxProcessWndProcException(exception);
        exception->Delete();
    } catch (...) {
        AfxProcessWndProcException(nullptr);
    }
    // The object itself may have ended meanwhile.
    if (message == WM_NCDESTROY && state.objects.Find(window) == object) object->Detach();
    return result;
}

LRESULT CWnd::WindowProc(UINT message, WPARAM first, LPARAM second) {
    LRESULT result = 0;
    return OnWndMsg(message, first, second, &result) ? result : Pass_On(message, first, second);
}

LRESULT CWnd::Pass_On(UINT message, WPARAM first, LPARAM second) noexcept {
    return m_pfnSuper ? CallWindowProcA(m_pfnSuper, m_hWnd, message, first, second)
                      : ::DefWindowProcA(m_hWnd, message, first, second);
}

LRESULT CWnd::Default() noexcept {
    const Message& answered = *State().answered;
    return Pass_On(answered.message, answered.first, answered.second);
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM first, LPARAM second, LRESULT* result) {
    if (!Is_About_Child(message)) return Answer({message, 0, 0, nullptr}, first, second, *result);
    CWnd* const child = FromHandlePermanent(Child_Of(message, second));
    if (child && child->OnChildNotify(message, first, second, result)) return TRUE;
    UINT code = 0;
    UINT_PTR id = 0;
    if (message == WM_COMMAND) {
        code = HIWORD(first);
        id = LOWORD(first);
    } else if (message == WM_NOTIFY && second) {
        code = reinterpret_cast<const NMHDR*>(second)->code;
        id = reinterpret_cast<const NMHDR*>(second)->idFrom;
    }
    return Answer({message, code, id, nullptr}, first, second, *result);
}

BOOL CWnd::OnChildNotify(UINT message, WPARAM first, LPARAM second, LRESULT* result) {
    if (Is_Color_Question(message)) {
        const UINT kind = message - WM_CTLCOLORMSGBOX;
        return Answer({WM_REFLECT_BASE + kColorQuestion, 0, 0, nullptr}, first, LPARAM{kind},
                      *result);
    }
    const UINT code =
        message == WM_NOTIFY ? reinterpret_cast<const NMHDR*>(second)->code : HIWORD(first);
    return Answer({WM_REFLECT_BASE + message, code, 0, nullptr}, first, second, *result);
}

// Most messages are in no map, and cost no walk through all of them.
BOOL CWnd::Answer(const AFX_MSGMAP_ENTRY& wanted, WPARAM first, LPARAM second, LRESULT& result) {
    const AFX_MSGMAP* const map = GetMessageMap();
    if (map != m_KnownMap) Learn(map);
    if ((m_KnownMessages & Kind_Of(wanted)) == 0) return FALSE;
    const AFX_MSGMAP_ENTRY* const found = Find_Entry(map, [&](const AFX_MSGMAP_ENTRY& entry) {
        return entry.nMessage == wanted.nMessage && entry.nCode == wanted.nCode &&
               entry.nID == wanted.nID;
    });
    return found ? found->pfn(*this, first, second, result) : FALSE;
}

void CWnd::Learn(const AFX_MSGMAP* map) noexcept {
    m_KnownMap = map;
    m_KnownMessages = 0;
    Find_Entry(map, [this](const AFX_MSGMAP_ENTRY& entry) {
        m_KnownMessages |= Kind_Of(entry);
        return false;
    });
}

void CWnd::OnDestroy() {
    Default();
}

BEGIN_MESSAGE_MAP(CWnd, CCmdTarget)
END_MESSAGE_MAP()
