// A list control that sorts by a click on a column's header and keeps its column widths.
#pragma once

#include <cstddef>
#include <exception>
#include <memory>

#include "../frame/RVString.h"
#include "../frame/export.h"
#include "../platform/mfc/CList.h"
#include "../platform/mfc/CListCtrl.h"

class RVResourceLoader;

namespace rv {
class SortTexts;
}

// How the width of a column is told.
enum RV_column_width_type : int {
    RV_column_width_percent = 0,  // of the client width less a vertical scroll bar's
    RV_column_width_pixels = 1
};

// One column of a table that describes them.
struct RV_list_ctrl_columns {
    int column;        // where it is inserted
    ULONG heading_id;  // number of the heading's text
    ULONG width;       // see RV_column_width_type
    ULONG flags;       // bits 0 and 1: 1 left, 2 right, 3 centred; 0x10: the first click descends
};

// The suite's list control.
//
// Sorting. A row is known by its item data, which have to be unique in the list; rows that share
// them sort with the text of the last one. A column is counted from 0. A click on a header sorts by
// its column: at first ascending, or descending where the column was inserted so; each further
// click turns the direction over. An arrow in the header tells column and direction; a list without
// a header to click on follows the same rule. Sorting is stable as far as the system's control is.
//
// Widths. With a settings host and a list name, the widths of all columns, in pixels, are stored
// when the window ends before the object, as one text under "ListCtrlColWidth" and the name:
// decimal numbers by the header's indexes, joined with a backslash. Init_Columns takes them before
// those of its table. A width belongs to a column by its position alone.
//
// Reports go to pProgrammer_Error, file "RVLstCtl":
//    3  a settings host without the interfaces, at a read; the table's widths apply
//   12  Init_Columns without a table
//   13  Init_Columns with a count of 0; a list view type that is none, which is set all the same
//   17  a width type that is none (the width of the column before is taken), alignment bits of 0
//       (left is taken)
// The control belongs to the thread that made its window. Without a window nothing happens but what
// concerns the object alone. What needs memory throws CMemoryException*.
class RVUTILS_API RVListCtrl : public CListCtrl {
public:
    // Orders two rows, ascending, by their texts in the sort column and their item data, of which
    // the low 32 bits are told: below 0, 0 or above 0. `column` is -1 while there is no sort.
    // `value` is that of Set_Sort_Callback.
    //
    // It runs inside of Sort_Columns. It may throw: the exception leaves Sort_Columns, with the
    // rows in an order that is not told. Rows can be neither inserted nor deleted meanwhile, and no
    // other sort begun: the control refuses it. It must not end the control.
    using Sort_Callback = int (*)(int column, CString first_text, LONG first_data,
                                  CString second_text, LONG second_data, LONG value);

    // `settings_host`: referenced for the object's life; null keeps no widths. `list_name`: copied;
    // null or empty keeps no widths. `allow_sort`: see Set_Allow_Sort.
    explicit RVListCtrl(IUnknown* settings_host = nullptr, RVString* list_name = nullptr,
                        bool allow_sort = true);
    ~RVListCtrl() override;

    // Whether clicks on headers sort. Sort_Columns does so in any case.
    void Set_Allow_Sort(bool allow);

    // Moves on as a click on the header of `column` does, or to that column and direction; -1 is no
    // sort. Only arrows change until Sort_Columns runs, and the heading is left-aligned from then
    // on.
    void Set_Column_Sort(int column);
    void Set_Column_Sort(int column, bool ascending);
    // -1 and false while there is no sort.
    void Get_Column_Sort(int& column, bool& ascending) const;

    // Sorts the rows, by the callback or else by the texts of the column without regard to case.
    // Selected rows stay selected; from the top on, each is deselected and selected once. Without a
    // sort, all rows have an empty text and the direction is descending.
    // Each text is read once: n log n comparisons, each with two look-ups.
    virtual void Sort_Columns();
    // Null restores the order of texts.
    void Set_Sort_Callback(Sort_Callback callback, LONG value);

    // Finds the rows with these item data; a negative number also finds item data of the same low
    // 32 bits with nothing above them. False when one is not there, whose index is -1.
    bool Get_Sort_Item_Idexes(LONG first_data, LONG second_data, int& first_index,
                              int& second_index) const;

    // Inserts the columns of a table, with the headings of the user's language, behind what columns
    // there are. Widths come from the store as long as there are any left, then from the table.
    // False, and no column is inserted, for a null table and a count of 0.
    bool Init_Columns(RVResourceLoader& loader, ULONG module_id, RV_column_width_type width_type,
                      const RV_list_ctrl_columns* columns, ULONG count);
    // As those of CListCtrl. `ascending` false: the first click on the column, by its index now,
    // sorts descending.
    int InsertColumn(int column, const char* heading, int format, int width, int sub_item,
                     bool ascending);
    int InsertColumn(int column, const LVCOLUMNA* description, bool ascending);
    // 0 without a header.
    ULONG Get_Num_Columns() const;

    // LVS_ICON, LVS_REPORT, LVS_SMALLICON or LVS_LIST.
    ULONG Get_List_View_Type() const;
    void Set_List_View_Type(ULONG type);

    // As CListCtrl; the arrows stay in the header.
    CImageList* SetImageList(CImageList* images, int kind);

protected:
    // Sorts by the column whose header was clicked, where that is allowed; `result` becomes 0 then.
    void On_Column_Click(NMHDR* notice, LRESULT* result);
    // Stores the widths of the columns.
    void OnDestroy();
    LRESULT WindowProc(UINT message, WPARAM first, LPARAM second) override;

    DECLARE_MESSAGE_MAP()

private:
    struct Sort;

    bool Is_Default_Descending(int column) const;
    void Set_Default_Sort_Descending(int column);
    void Begin_Insertion();
    int End_Insertion(int column, bool ascending);
    void Init_Header_Image_List();
    void Init_Column_Image(int column);
    void Set_Header_Arrow(int column, int format, int image);
    void Read_Sort_Texts(rv::SortTexts& texts) const;
    void Renew_Selection();
    void Restore_Column_Widths(CList<ULONG, ULONG>& widths) const;
    void Store_Column_Widths() const;

    Sort_Callback m_Callback = nullptr;
    LONG m_Callback_Value = 0;
    Sort* m_Sort = nullptr;  // the one that is under way
    int m_Sort_State = 0;    // 0 none, column + 1 ascending, -(column + 1) descending
    bool m_Allow_Sort;
    IUnknown* m_Settings_Host;
    RVString m_List_Name;
    CList<ULONG, ULONG> m_Default_Descending;
    HWND m_Header = nullptr;
    HIMAGELIST m_Header_Images = nullptr;
};
