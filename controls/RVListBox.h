// A list box that scrolls sideways as far as its widest string.
#pragma once

#include "../frame/export.h"
#include "../platform/mfc/CListBox.h"

// The scroll range only grows; taking strings out does not narrow it. Strings are measured in the
// font of a fresh device context, whatever font the list shows.
class RVUTILS_API RVListBox : public CListBox {
public:
    RVListBox();
    ~RVListBox() override;

    // As those of CListBox, after widening the range, which happens even where they fail. Null is
    // the empty text.
    int AddString(const char* text);
    int InsertString(int row, const char* text);

    // Whether no row but `own_row` has the text, whatever the case of its letters. For a text from
    // elsewhere, `own_row` is no row. `text` stays as it is. Throws CMemoryException*.
    bool Validate_Text(CString& text, ULONG own_row);

protected:
    // Widens the range for the text. Nothing happens without a window.
    virtual void Adjust_Horizontal_Scroll(const char* text);

    DECLARE_MESSAGE_MAP()
};
