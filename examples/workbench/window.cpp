#include "window.h"

#include "items.h"

namespace {

// Of controls. The default button has the number that the system gives it.
enum Id : UINT { kAdd = IDOK, kCancel = 2, kField = 10, kList, kKinds, kFirstColor };

constexpr RECT kWindowPlace = {40, 40, 700, 400};
constexpr RECT kHeadingPlace = {12, 12, 636, 30};
constexpr RECT kListPlace = {12, 42, 432, 312};
constexpr RECT kKindsLabelPlace = {444, 42, 636, 60};
constexpr RECT kKindsPlace = {444, 62, 636, 146};
constexpr RECT kColorsLabelPlace = {444, 152, 636, 170};
constexpr RECT kPanePlace = {444, 206, 636, 312};
constexpr RECT kFieldLabelPlace = {10, 10, 180, 28};
constexpr RECT kFieldPlace = {10, 30, 180, 54};
constexpr RECT kAddPlace = {10, 66, 90, 92};
constexpr RECT kCancelPlace = {100, 66, 180, 92};

constexpr COLORREF kHeadingText = RGB(255, 255, 255);
constexpr COLORREF kHeadingGround = RGB(0, 60, 110);

// The columns, in percent; the first click on the date shows the newest.
constexpr RV_list_ctrl_columns kColumns[] = {
    {0, IDS_NAME, 40, 1}, {1, IDS_KIND, 22, 1}, {2, IDS_SIZE, 14, 2}, {3, IDS_DATE, 24, 1 | 0x10}};
constexpr ULONG kColumnCount = sizeof kColumns / sizeof *kColumns;

// The document of the one window, for the order of its rows.
const workbench::Document* g_Document = nullptr;

RVString Text_Of(RVResourceLoader& items, ULONG id) {
    RVString text;
    items.Load_String(text, id);
    return text;
}

// What needs no object.
HWND Make_Control(HWND parent, const char* class_name, const char* text, DWORD style,
                  DWORD extended_style, const RECT& place, UINT id) {
    return CreateWindowExA(extended_style, class_name, text, WS_CHILD | WS_VISIBLE | style,
                           place.left, place.top, place.right - place.left,
                           place.bottom - place.top, parent, reinterpret_cast<HMENU>(UINT_PTR{id}),
                           nullptr, nullptr);
}

template <class Number>
int Compared(Number first, Number second) {
    return first < second ? -1 : first > second;
}

}  // namespace

namespace workbench {

// --- the pane ------------------------------------------------------------------------------------

void KindPane::Create(CWnd& parent, const RECT& place, RVResourceLoader& items, RVListBox& kinds) {
    m_Kinds = &kinds;
    CreateEx(WS_EX_CONTROLPARENT, "#32770", "", WS_CHILD | WS_VISIBLE | WS_BORDER, place, &parent,
             0);
    Make_Control(m_hWnd, "Static", Text_Of(items, IDS_NEW_KIND), SS_LEFT, 0, kFieldLabelPlace,
                 0xFFFF);
    m_Field = Make_Control(m_hWnd, "Edit", "", WS_TABSTOP, WS_EX_CLIENTEDGE, kFieldPlace, kField);
    m_Add.Create(Text_Of(items, IDS_ADD), WS_VISIBLE | WS_TABSTOP, kAddPlace, this, kAdd);
    m_Cancel.Create(Text_Of(items, IDS_CANCEL), WS_VISIBLE | WS_TABSTOP, kCancelPlace, this,
                    kCancel);
    SendMessageA(m_hWnd, DM_SETDEFID, kAdd, 0);
    pSet_Dialog_Focus(m_Field);
}

RVString KindPane::Typed() const {
    char text[64];
    GetWindowTextA(m_Field, text, sizeof text);
    return text;
}

// A kind that is there already stays in the field.
void KindPane::On_Add() {
    constexpr ULONG kNoRow = 0xFFFFFFFF;
    RVString kind = Typed();
    if (kind.IsEmpty() || !m_Kinds->Validate_Text(kind, kNoRow)) return;
    m_Kinds->AddString(kind);
    On_Cancel();
}

void KindPane::On_Cancel() {
    SetWindowTextA(m_Field, "");
    pSet_Dialog_Focus(m_Field);
}

BEGIN_MESSAGE_MAP(KindPane, CWnd)
ON_BN_CLICKED(kAdd, &ThisClass::On_Add)
ON_BN_CLICKED(kCancel, &ThisClass::On_Cancel)
END_MESSAGE_MAP()

// --- the window ----------------------------------------------------------------------------------

Window::Window(IUnknown* settings, const Document& document)
    : m_Document(document), m_List(settings, &m_List_Name) {
    g_Document = &document;
}

bool Window::Show(RVResourceLoader& items) {
    if (!CreateEx(0, "#32770", Text_Of(items, IDS_TITLE), WS_POPUP | WS_CAPTION | WS_SYSMENU,
                  kWindowPlace, nullptr, 0))
        return false;
    RVString heading;
    heading.Format(Text_Of(items, IDS_ATTACHMENTS), m_Document.tag.GetString());
    Add_Label(m_Heading, heading, kHeadingPlace);
    m_Heading.Set_Text_Color(kHeadingText);
    m_Heading.Set_Background_Color(kHeadingGround);
    Show_List(items);
    Show_Kinds(items);
    Show_Colors(items);
    m_New_Kind.Create(*this, kPanePlace, items, m_Kinds);
    ShowWindow(m_hWnd, SW_SHOW);
    UpdateWindow(m_hWnd);
    return true;
}

void Window::Add_Label(RVStatic& label, const char* text, const RECT& place) {
    label.Create(text, WS_VISIBLE | SS_LEFT | SS_NOPREFIX, place, this);
}

void Window::Show_List(RVResourceLoader& items) {
    m_List.Create(LVS_REPORT | LVS_SHOWSELALWAYS | WS_VISIBLE | WS_BORDER | WS_TABSTOP, kListPlace,
                  this, kList);
    m_List.Init_Columns(items, 0, RV_column_width_percent, kColumns, kColumnCount);
    m_List.Set_Sort_Callback(&Order, 0);
    int row = 0;
    for (const Attachment& attachment : m_Document.attachments) {
        RVString size, date;
        size.Format("%d", attachment.size);
        RVDateTime(attachment.date).Get_Date_Value(date);
        m_List.InsertItem(row, attachment.name);
        m_List.SetItemText(row, 1, Text_Of(items, IDS_FIRST_KIND + attachment.kind));
        m_List.SetItemText(row, 2, size);
        m_List.SetItemText(row, 3, date);
        m_List.SetItemData(row, static_cast<UINT_PTR>(row));
        ++row;
    }
    m_List.Set_Column_Sort(0);
    m_List.Sort_Columns();
}

void Window::Show_Kinds(RVResourceLoader& items) {
    Add_Label(m_Kinds_Label, Text_Of(items, IDS_KINDS), kKindsLabelPlace);
    m_Kinds.Create(
        WS_VISIBLE | WS_BORDER | WS_VSCROLL | WS_HSCROLL | WS_TABSTOP | LBS_NOINTEGRALHEIGHT,
        kKindsPlace, this, kKinds);
    for (ULONG id = IDS_FIRST_KIND; id <= IDS_LAST_KIND; ++id)
        m_Kinds.AddString(Text_Of(items, id));
}

void Window::Show_Colors(RVResourceLoader& items) {
    Add_Label(m_Colors_Label, Text_Of(items, IDS_COLORS), kColorsLabelPlace);
    RECT place = {444, 174, 500, 198};
    UINT id = kFirstColor;
    for (RVColorCellCtrl& color : m_Colors) {
        color.Create("", WS_VISIBLE | BS_OWNERDRAW, place, this, id++);
        place.left += 68;
        place.right += 68;
    }
}

// Numbers and dates by what they are, texts by their letters. The arguments are RVListCtrl's.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
int Window::Order(int column, CString first_text, LONG first, CString second_text, LONG second,
                  LONG) {
    const auto& rows = g_Document->attachments;
    const Attachment& left = rows[static_cast<std::size_t>(first)];
    const Attachment& right = rows[static_cast<std::size_t>(second)];
    if (column == 2) return Compared(left.size, right.size);
    if (column == 3) return left.date.Compare_Date(right.date);
    return first_text.CompareNoCase(second_text);
}

HWND Window::Header() const {
    return m_List.GetHeaderCtrl()->m_hWnd;
}

POINT Window::Header_Middle(int column) const {
    RECT place = {};
    SendMessageA(Header(), HDM_GETITEMRECT, static_cast<WPARAM>(column),
                 reinterpret_cast<LPARAM>(&place));
    return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
}

// The system tells of it as of a button that cancels the dialog.
void Window::On_Close() {
    DestroyWindow();
}

BEGIN_MESSAGE_MAP(Window, CWnd)
ON_BN_CLICKED(kCancel, &ThisClass::On_Close)
END_MESSAGE_MAP()

}  // namespace workbench
