// The list control with columns, and the header above them.
#pragma once

#include "CImageList.h"
#include "CString.h"
#include "CWnd.h"

class RVPLATFORM_API CHeaderCtrl : public CWnd {
public:
    // -1 without a window.
    int GetItemCount() const;
    // Both as the messages HDM_GETITEM and HDM_SETITEM.
    BOOL GetItem(int index, HDITEMA* item) const;
    BOOL SetItem(int index, HDITEMA* item);
};

// Rows and columns are counted from 0. Without a window, operations fail as they do for a row that
// is not there, and there is no row.
class RVPLATFORM_API CListCtrl : public CWnd {
public:
    ~CListCtrl() override;

    // Makes the control as a child of `parent`, which is not null; WS_CHILD is added to `style`.
    // FALSE on failure, as CreateEx.
    virtual BOOL Create(DWORD style, const RECT& place, CWnd* parent, UINT id);

    // Null where the list has none. One that nobody has made an object for is the list's own and
    // ends with it.
    CHeaderCtrl* GetHeaderCtrl() const;
    // Index of the new column, -1 on failure. A width or a number of -1 is not set.
    int InsertColumn(int column, const LVCOLUMNA* description);
    int InsertColumn(int column, const char* heading, int format = LVCFMT_LEFT, int width = -1,
                     int sub_item = -1);

    int GetItemCount() const;
    // Index of the new row, -1 on failure.
    int InsertItem(int row, const char* text);
    BOOL SetItemText(int row, int column, const char* text);
    // Copies the text to `buffer` of `room` bytes, cut to fit, with a NUL, and gives its length
    // without that; 0 for a cell that is not there.
    int GetItemText(int row, int column, char* buffer, int room) const;
    // Throws CMemoryException*.
    CString GetItemText(int row, int column) const;
    // What the application keeps with a row; 0 for a row that is not there.
    UINT_PTR GetItemData(int row) const;
    BOOL SetItemData(int row, UINT_PTR data);
    // Sets the bits of `mask` to those of `state`.
    BOOL SetItemState(int row, UINT state, UINT mask);
    // The next row behind `row` with the states of `flags` (LVNI_), from the top for -1; -1 for
    // none.
    int GetNextItem(int row, int flags) const;

    // Gives the list before, null for none. See CImageList::FromHandle.
    CImageList* SetImageList(CImageList* images, int kind);

private:
    mutable CHeaderCtrl m_Header;
};
