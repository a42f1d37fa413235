#include "RVListCtrl.h"

#include <utility>

#include "../frame/RVDev.h"
#include "../resources/RVResourceLoader.h"
#include "../values/RVStringPacker.h"
#include "ColumnWidthStore.h"
#include "RVWaitCursor.h"
#include "SortTexts.h"

namespace {

constexpr unsigned int kNoInterface = 3;
constexpr unsigned int kNoColumns = 12;
constexpr unsigned int kBadArgument = 13;
constexpr unsigned int kBadDescription = 17;

constexpr WORD kArrows = 130;  // the bitmap: down, up
constexpr int kArrowWidth = 16;
constexpr COLORREF kArrowMask = RGB(255, 0, 0);
constexpr int kArrowDown = 0;
constexpr int kArrowUp = 1;

constexpr ULONG kAlignment = 0x3;
constexpr ULONG kDescends = 0x10;
constexpr DWORD kListViewType = 0x3;

constexpr char kDelimiter[] = "\\";
constexpr int kFirstRoom = 256;  // most cells fit

DWORD Style_Of(HWND window) {
    return static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE));
}

void Report(unsigned int code, ULONG line) {
    pProgrammer_Error(code, "RVLstCtl", line, true);
}

// Without overflow, whatever column an application names.
int Wrapped(LONGLONG number) {
    return static_cast<int>(static_cast<ULONG>(number));
}

LRESULT Send(HWND window, UINT message, INT_PTR number, const void* record) {
    return SendMessageA(window, message, static_cast<WPARAM>(number),
                        reinterpret_cast<LPARAM>(record));
}

HINSTANCE Own_Module() {
    HMODULE module = nullptr;
    const DWORD flags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!GetModuleHandleExA(flags, kDelimiter, &module)) return nullptr;
    return module;
}

int Column_Format(ULONG flags) {
    switch (flags & kAlignment) {
        case 1:
            return LVCFMT_LEFT;
        case 2:
            return LVCFMT_RIGHT;
        case 3:
            return LVCFMT_CENTER;
        default:
            Report(kBadDescription, __LINE__);
            return LVCFMT_LEFT;
    }
}

// Reads the texts of cells, one after the other, into one buffer.
class CellReader {
public:
    explicit CellReader(const CListCtrl& list) : m_List(list) {}

    CString& Read(int row, int column) {
        for (;; m_Room *= 2) {
            char* const buffer = m_Text.GetBuffer(m_Room - 1);
            const int length = m_List.GetItemText(row, column, buffer, m_Room);
            m_Text.ReleaseBuffer(length);
            if (length < m_Room - 1) return m_Text;
        }
    }

private:
    const CListCtrl& m_List;
    CString m_Text;
    int m_Room = kFirstRoom;
};

}  // namespace

// What a sort needs while it runs.
struct RVListCtrl::Sort {
    Sort(RVListCtrl& control, Sort_Callback order) : list(control), callback(order), texts(!order) {
        list.m_Sort = this;
    }
    Sort(const Sort&) = delete;
    Sort& operator=(const Sort&) = delete;
    ~Sort() { list.m_Sort = nullptr; }

    struct Row {
        LPARAM data;
        int text;
    };
    // What LVM_SORTITEMS orders the rows of `list` by.
    template <int (Sort::*order)(const Row&, const Row&) noexcept>
    static int Compare(LPARAM first, LPARAM second, LPARAM list) noexcept {
        Sort* const sort = reinterpret_cast<const RVListCtrl*>(list)->m_Sort;
        if (!sort) return 0;
        const int left = sort->texts.Find(first);
        const int right = sort->texts.Find(second);
        if (left < 0 || right < 0) return 0;
        const int answer = (sort->*order)({first, left}, {second, right});
        return sort->list.m_Sort_State > 0 ? answer : -answer;
    }

    int By_Texts(const Row& first, const Row& second) noexcept { return first.text - second.text; }

    // What it throws must not pass through the system's sort.
    int By_Callback(const Row& first, const Row& second) noexcept {
        if (thrown) return 0;
        try {
            int column;
            bool unused;
            list.Get_Column_Sort(column, unused);
            const int order = callback(column, texts.Text_Of(first.text),
                                       static_cast<LONG>(first.data), texts.Text_Of(second.text),
                                       static_cast<LONG>(second.data), list.m_Callback_Value);
            return (order > 0) - (order < 0);
        } catch (...) {
            thrown = std::current_exception();
            return 0;
        }
    }

    RVListCtrl& list;
    const Sort_Callback callback;
    rv::SortTexts texts;
    bool is_ordering = false;  // inside of the control's own sort
    std::exception_ptr thrown;
};

RVListCtrl::RVListCtrl(IUnknown* settings_host, RVString* list_name, bool allow_sort)
    : m_Allow_Sort(allow_sort), m_Settings_Host(settings_host) {
    if (list_name) m_List_Name = *list_name;
    if (m_Settings_Host) m_Settings_Host->AddRef();
}

RVListCtrl::~RVListCtrl() {
    if (m_Header_Images) ImageList_Destroy(m_Header_Images);
    if (m_Settings_Host) m_Settings_Host->Release();
}

// --- sorting -------------------------------------------------------------------------------------

void RVListCtrl::Set_Allow_Sort(bool allow) {
    m_Allow_Sort = allow;
}

void RVListCtrl::Set_Column_Sort(int column) {
    int sorted;
    bool ascending;
    Get_Column_Sort(sorted, ascending);
    if (m_Sort_State != 0 && column == sorted)
        Set_Column_Sort(column, !ascending);
    else
        Set_Column_Sort(column, !Is_Default_Descending(column));
}

void RVListCtrl::Set_Column_Sort(int column, bool ascending) {
    int before;
    bool unused;
    Get_Column_Sort(before, unused);
    Set_Header_Arrow(m_Sort_State != 0 ? before : 0, HDF_STRING, -1);
    const LONGLONG state = LONGLONG{column} + 1;
    m_Sort_State = Wrapped(ascending ? state : -state);
    if (m_Sort_State == 0) return;
    Set_Header_Arrow(column, HDF_STRING | HDF_IMAGE | HDF_BITMAP_ON_RIGHT,
                     ascending ? kArrowUp : kArrowDown);
}

void RVListCtrl::Get_Column_Sort(int& column, bool& ascending) const {
    const LONGLONG state = m_Sort_State;
    column = Wrapped((state < 0 ? -state : state) - 1);
    ascending = m_Sort_State > 0;
}

void RVListCtrl::Set_Sort_Callback(Sort_Callback callback, LONG value) {
    m_Callback = callback;
    m_Callback_Value = value;
}

void RVListCtrl::Sort_Columns() {
    if (m_Sort) return;
    {
        Sort sort(*this, m_Callback);
        Read_Sort_Texts(sort.texts);
        const PFNLVCOMPARE compare =
            sort.callback ? &Sort::Compare<&Sort::By_Callback> : &Sort::Compare<&Sort::By_Texts>;
        SendMessageA(m_hWnd, LVM_SORTITEMS, reinterpret_cast<WPARAM>(this),
                     reinterpret_cast<LPARAM>(compare));
        if (sort.thrown) std::rethrow_exception(sort.thrown);
    }
    Renew_Selection();
}

void RVListCtrl::Read_Sort_Texts(rv::SortTexts& texts) const {
    int column;
    bool ascending;
    Get_Column_Sort(column, ascending);
    CellReader reader(*this);
    const int count = GetItemCount();
    texts.Reserve(static_cast<std::size_t>(count));
    for (int row = 0; row < count; ++row)
        texts.Add(static_cast<LPARAM>(GetItemData(row)), reader.Read(row, column));
    texts.Finish();
}

void RVListCtrl::Renew_Selection() {
    int row = GetNextItem(-1, LVNI_SELECTED);
    while (row >= 0) {
        const int next = GetNextItem(row, LVNI_SELECTED);
        SetItemState(row, 0, LVIS_SELECTED);
        SetItemState(row, LVIS_SELECTED, LVIS_SELECTED);
        row = next;
    }
}

bool RVListCtrl::Get_Sort_Item_Idexes(LONG first_data, LONG second_data, int& first_index,
                                      int& second_index) const {
    const auto find = [this](LPARAM data) {
        LVFINDINFOA wanted = {};
        wanted.flags = LVFI_PARAM;
        wanted.lParam = data;
        return ::IsWindow(m_hWnd) ? static_cast<int>(Send(m_hWnd, LVM_FINDITEMA, -1, &wanted)) : -1;
    };
    // Item data are wider than the numbers that stand for them.
    const auto find_number = [&](LONG data) {
        const int row = find(data);
        return row < 0 && data < 0 ? find(LPARAM{static_cast<ULONG>(data)}) : row;
    };
    first_index = find_number(first_data);
    second_index = find_number(second_data);
    return first_index >= 0 && second_index >= 0;
}

void RVListCtrl::On_Column_Click(NMHDR* notice, LRESULT* result) {
    if (!m_Allow_Sort) return;
    const RVWaitCursor wait;
    Set_Column_Sort(reinterpret_cast<const NMLISTVIEW*>(notice)->iSubItem);
    Sort_Columns();
    *result = 0;
}

// While rows are being ordered, there have to be neither more nor less of them.
LRESULT RVListCtrl::WindowProc(UINT message, WPARAM first, LPARAM second) {
    if (m_Sort) {
        if (message == LVM_SORTITEMS && !std::exchange(m_Sort->is_ordering, true))
            return CListCtrl::WindowProc(message, first, second);
        if (message == LVM_INSERTITEMA) return -1;
        if (message == LVM_DELETEITEM || message == LVM_DELETEALLITEMS || message == LVM_SORTITEMS)
            return FALSE;
    }
    return CListCtrl::WindowProc(message, first, second);
}

// --- arrows --------------------------------------------------------------------------------------

bool RVListCtrl::Is_Default_Descending(int column) const {
    return m_Default_Descending.Find(static_cast<ULONG>(column)) != nullptr;
}

void RVListCtrl::Set_Default_Sort_Descending(int column) {
    m_Default_Descending.AddTail(static_cast<ULONG>(column));
}

void RVListCtrl::Set_Header_Arrow(int column, int format, int image) {
    if (!m_Header) return;
    HDITEMA item = {};
    item.mask = HDI_FORMAT | HDI_IMAGE;
    item.fmt = format;
    item.iImage = image;
    Send(m_Header, HDM_SETITEMA, column, &item);
}

void RVListCtrl::Init_Header_Image_List() {
    if (m_Header && m_Header_Images) return;
    if (Style_Of(m_hWnd) & LVS_NOSORTHEADER) return;
    m_Header = reinterpret_cast<HWND>(Send(m_hWnd, LVM_GETHEADER, 0, nullptr));
    if (!m_Header) return;
    // One from before, with another window, still serves.
    if (!m_Header_Images)
        m_Header_Images = ImageList_LoadImageA(Own_Module(), MAKEINTRESOURCEA(kArrows), kArrowWidth,
                                               0, kArrowMask, IMAGE_BITMAP, 0);
    Send(m_Header, HDM_SETIMAGELIST, 0, m_Header_Images);
}

void RVListCtrl::Init_Column_Image(int column) {
    int sorted = 0;
    bool ascending = !Is_Default_Descending(column);
    if (m_Sort_State != 0) Get_Column_Sort(sorted, ascending);
    if (!m_Header) return;
    HDITEMA item = {};
    item.mask = HDI_FORMAT | HDI_IMAGE;
    Send(m_Header, HDM_GETITEMA, column, &item);
    item.iImage = -1;
    if (column == sorted && m_Allow_Sort) {
        item.fmt |= HDF_IMAGE | HDF_BITMAP_ON_RIGHT;
        item.iImage = ascending ? kArrowUp : kArrowDown;
    }
    Send(m_Header, HDM_SETITEMA, column, &item);
}

CImageList* RVListCtrl::SetImageList(CImageList* images, int kind) {
    CImageList* const before = CListCtrl::SetImageList(images, kind);
    // The list gives its small images to the header, too.
    if (kind == LVSIL_SMALL && m_Header && m_Header_Images)
        Send(m_Header, HDM_SETIMAGELIST, 0, m_Header_Images);
    return before;
}

// --- columns -------------------------------------------------------------------------------------

bool RVListCtrl::Init_Columns(RVResourceLoader& loader, ULONG module_id,
                              RV_column_width_type width_type, const RV_list_ctrl_columns* columns,
                              ULONG count) {
    if (!columns || count == 0) {
        Report(columns ? kBadArgument : kNoColumns, __LINE__);
        return false;
    }
    Begin_Insertion();
    const auto style = static_cast<DWORD>(Send(m_hWnd, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, nullptr));
    SendMessageA(m_hWnd, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LPARAM{style | LVS_EX_FULLROWSELECT});
    RECT inside = {};
    GetClientRect(m_hWnd, &inside);
    const auto usable =
        static_cast<ULONG>(inside.right - inside.left - GetSystemMetrics(SM_CXVSCROLL));
    CList<ULONG, ULONG> stored;
    Restore_Column_Widths(stored);
    ULONG width = 0;
    for (const RV_list_ctrl_columns* record = columns; record != columns + count; ++record) {
        RVString heading;
        loader.Load_String(heading, record->heading_id, module_id);
        if (!stored.IsEmpty())
            width = stored.RemoveHead();
        else if (width_type == RV_column_width_percent)
            width = record->width * usable / 100;
        else if (width_type == RV_column_width_pixels)
            width = record->width;
        else
            Report(kBadDescription, __LINE__);
        InsertColumn(record->column, heading, Column_Format(record->flags), static_cast<int>(width),
                     -1, !(record->flags & kDescends));
    }
    return true;
}

void RVListCtrl::Begin_Insertion() {
    Init_Header_Image_List();
    if (Get_Num_Columns() == 0) m_Default_Descending.RemoveAll();
}

int RVListCtrl::End_Insertion(int column, bool ascending) {
    if (!ascending) Set_Default_Sort_Descending(column);
    Init_Column_Image(column);
    return column;
}

int RVListCtrl::InsertColumn(int column, const char* heading, int format, int width, int sub_item,
                             bool ascending) {
    Begin_Insertion();
    return End_Insertion(CListCtrl::InsertColumn(column, heading, format, width, sub_item),
                         ascending);
}

int RVListCtrl::InsertColumn(int column, const LVCOLUMNA* description, bool ascending) {
    Begin_Insertion();
    return End_Insertion(CListCtrl::InsertColumn(column, description), ascending);
}

ULONG RVListCtrl::Get_Num_Columns() const {
    const CHeaderCtrl* const header = GetHeaderCtrl();
    return header ? static_cast<ULONG>(header->GetItemCount()) : 0;
}

ULONG RVListCtrl::Get_List_View_Type() const {
    return Style_Of(m_hWnd) & kListViewType;
}

void RVListCtrl::Set_List_View_Type(ULONG type) {
    if (!::IsWindow(m_hWnd)) return;
    if (type > kListViewType) Report(kBadArgument, __LINE__);
    const DWORD style = Style_Of(m_hWnd);
    if ((style & kListViewType) == type) return;
    SetWindowLongA(m_hWnd, GWL_STYLE, static_cast<LONG>((style & ~kListViewType) | type));
}

void RVListCtrl::Restore_Column_Widths(CList<ULONG, ULONG>& widths) const {
    if (!m_Settings_Host || m_List_Name.IsEmpty()) return;
    RVString packed;
    switch (rv::Read_Column_Widths(*m_Settings_Host, m_List_Name, packed)) {
        case rv::StoreAnswer::kNoStore:
            Report(kNoInterface, __LINE__);
            return;
        case rv::StoreAnswer::kNothing:
            return;
        case rv::StoreAnswer::kText:
            break;
    }
    RVStringPacker packer;
    packer.Set(packed);
    CStringArray items;
    packer.Unpack(items, kDelimiter);
    for (INT_PTR index = 0; index < items.GetSize(); ++index)
        widths.AddTail(RVString(items[index]));
}

void RVListCtrl::Store_Column_Widths() const {
    const CHeaderCtrl* const header = GetHeaderCtrl();
    if (!m_Settings_Host || m_List_Name.IsEmpty() || !header) return;
    RVStringPacker packer;
    for (int index = 0; index < header->GetItemCount(); ++index) {
        HDITEMA item = {};
        item.mask = HDI_WIDTH;
        header->GetItem(index, &item);
        RVString width;
        width.Number_To_String(item.cxy);
        packer.Pack(width, kDelimiter);
    }
    rv::Write_Column_Widths(*m_Settings_Host, m_List_Name, packer);
}

void RVListCtrl::OnDestroy() {
    // Also where there is no memory for the widths.
    struct AtTheEnd {
        ~AtTheEnd() {
            list.m_Header = nullptr;
            list.CListCtrl::OnDestroy();
        }
        RVListCtrl& list;
    } const at_the_end = {*this};
    Store_Column_Widths();
}

BEGIN_MESSAGE_MAP(RVListCtrl, CListCtrl)
ON_NOTIFY_REFLECT(LVN_COLUMNCLICK, &ThisClass::On_Column_Click)
ON_WM_DESTROY()
END_MESSAGE_MAP()
