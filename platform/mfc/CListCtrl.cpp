#include "CListCtrl.h"

namespace {

constexpr int kFirstRoom = 256;  // most cells fit

LRESULT Send(HWND window, UINT message, int number, const void* record = nullptr) {
    return SendMessageA(window, message, static_cast<WPARAM>(static_cast<INT_PTR>(number)),
                        reinterpret_cast<LPARAM>(record));
}

int Send_For_Index(HWND window, UINT message, int number, const void* record) {
    // A message to no window is answered by 0.
    return ::IsWindow(window) ? static_cast<int>(Send(window, message, number, record)) : -1;
}

}  // namespace

int CHeaderCtrl::GetItemCount() const {
    return Send_For_Index(m_hWnd, HDM_GETITEMCOUNT, 0, nullptr);
}

BOOL CHeaderCtrl::GetItem(int index, HDITEMA* item) const {
    return Send(m_hWnd, HDM_GETITEMA, index, item) != 0;
}

BOOL CHeaderCtrl::SetItem(int index, HDITEMA* item) {
    return Send(m_hWnd, HDM_SETITEMA, index, item) != 0;
}

CListCtrl::~CListCtrl() {
    m_Header.m_hWnd = nullptr;  // its window is the list's
}

BOOL CListCtrl::Create(DWORD style, const RECT& place, CWnd* parent, UINT id) {
    const INITCOMMONCONTROLSEX families = {sizeof families, ICC_LISTVIEW_CLASSES};
    return InitCommonControlsEx(&families) &&
           CreateEx(0, WC_LISTVIEWA, "", style | WS_CHILD, place, parent, id);
}

CHeaderCtrl* CListCtrl::GetHeaderCtrl() const {
    const auto window = reinterpret_cast<HWND>(Send(m_hWnd, LVM_GETHEADER, 0));
    if (!window) return nullptr;
    if (auto* const object = dynamic_cast<CHeaderCtrl*>(FromHandlePermanent(window))) return object;
    m_Header.m_hWnd = window;
    return &m_Header;
}

int CListCtrl::InsertColumn(int column, const LVCOLUMNA* description) {
    return Send_For_Index(m_hWnd, LVM_INSERTCOLUMNA, column, description);
}

int CListCtrl::InsertColumn(int column, const char* heading, int format, int width, int sub_item) {
    LVCOLUMNA description = {};
    description.mask = LVCF_TEXT | LVCF_FMT;
    description.pszText = const_cast<char*>(heading);
    description.fmt = format;
    if (width != -1) {
        description.mask |= LVCF_WIDTH;
        description.cx = width;
    }
    if (sub_item != -1) {
        description.mask |= LVCF_SUBITEM;
        description.iSubItem = sub_item;
    }
    return InsertColumn(column, &description);
}

int CListCtrl::GetItemCount() const {
    return static_cast<int>(Send(m_hWnd, LVM_GETITEMCOUNT, 0));
}

int CListCtrl::InsertItem(int row, const char* text) {
    LVITEMA item = {};
    item.mask = LVIF_TEXT;
    item.iItem = row;
    item.pszText = const_cast<char*>(text);
    return Send_For_Index(m_hWnd, LVM_INSERTITEMA, 0, &item);
}

BOOL CListCtrl::SetItemText(int row, int column, const char* text) {
    LVITEMA item = {};
    item.iSubItem = column;
    item.pszText = const_cast<char*>(text);
    return Send(m_hWnd, LVM_SETITEMTEXTA, row, &item) != 0;
}

int CListCtrl::GetItemText(int row, int column, char* buffer, int room) const {
    LVITEMA item = {};
    item.iSubItem = column;
    item.pszText = buffer;
    item.cchTextMax = room;
    const auto length = static_cast<int>(Send(m_hWnd, LVM_GETITEMTEXTA, row, &item));
    if (length > 0) return length;
    if (room > 0) *buffer = '\0';
    return 0;
}

CString CListCtrl::GetItemText(int row, int column) const {
    CString text;
    for (int room = kFirstRoom;; room *= 2) {
        const int length = GetItemText(row, column, text.GetBuffer(room - 1), room);
        text.ReleaseBuffer(length);
        if (length < room - 1) break;
    }
    text.FreeExtra();
    return text;
}

UINT_PTR CListCtrl::GetItemData(int row) const {
    LVITEMA item = {};
    item.mask = LVIF_PARAM;
    item.iItem = row;
    return Send(m_hWnd, LVM_GETITEMA, 0, &item) ? static_cast<UINT_PTR>(item.lParam) : 0;
}

BOOL CListCtrl::SetItemData(int row, UINT_PTR data) {
    LVITEMA item = {};
    item.mask = LVIF_PARAM;
    item.iItem = row;
    item.lParam = static_cast<LPARAM>(data);
    return Send(m_hWnd, LVM_SETITEMA, 0, &item) != 0;
}

BOOL CListCtrl::SetItemState(int row, UINT state, UINT mask) {
    LVITEMA item = {};
    item.state = state;
    item.stateMask = mask;
    return Send(m_hWnd, LVM_SETITEMSTATE, row, &item) != 0;
}

int CListCtrl::GetNextItem(int row, int flags) const {
    if (!::IsWindow(m_hWnd)) return -1;
    return static_cast<int>(SendMessageA(m_hWnd, LVM_GETNEXTITEM,
                                         static_cast<WPARAM>(static_cast<INT_PTR>(row)),
                                         MAKELPARAM(flags, 0)));
}

CImageList* CListCtrl::SetImageList(CImageList* images, int kind) {
    HIMAGELIST const handle = images ? images->GetSafeHandle() : nullptr;
    return CImageList::FromHandle(
        reinterpret_cast<HIMAGELIST>(Send(m_hWnd, LVM_SETIMAGELIST, kind, handle)));
}
