// The list box.
#pragma once

#include "CString.h"
#include "CWnd.h"

// Rows are counted from 0. Without a window, operations fail as they do for a row that is not
// there.
class RVPLATFORM_API CListBox : public CWnd {
public:
    // Makes the control as a child of `parent`, which is not null; WS_CHILD is added to `style`.
    // FALSE on failure, as CreateEx.
    virtual BOOL Create(DWORD style, const RECT& place, CWnd* parent, UINT id);

    // LB_ERR on failure.
    int GetCount() const;
    // LB_ERR for a row that is not there.
    int GetTextLen(int row) const;
    // The text of a row; as it was for a row that is not there. Throws CMemoryException*.
    void GetText(int row, CString& text) const;
    // The row that the text got; LB_ERR or LB_ERRSPACE on failure.
    int AddString(const char* text);
    int InsertString(int row, const char* text);
};
