// The window of the program.
#pragma once

#include <RVUtils/RVUtils.h>

#include "document.h"

namespace workbench {

// A pane in which the user names a new kind: a dialog with a default button.
class KindPane : public CWnd {
public:
    // `kinds`: gets what the user adds, and outlives the pane.
    void Create(CWnd& parent, const RECT& place, RVResourceLoader& items, RVListBox& kinds);

protected:
    void On_Add();
    void On_Cancel();

    DECLARE_MESSAGE_MAP()

private:
    RVString Typed() const;

    HWND m_Field = nullptr;
    RVButton m_Add, m_Cancel;
    RVListBox* m_Kinds = nullptr;
};

class Window : public CWnd {
public:
    // `settings`: keeps the widths of columns; may be null. `document` outlives the window.
    Window(IUnknown* settings, const Document& document);

    // Shows the window with the texts of `items`. False when the system refuses it.
    bool Show(RVResourceLoader& items);

    // The middle of a column's header, from the corner of the header.
    POINT Header_Middle(int column) const;
    HWND Header() const;

protected:
    void On_Close();

    DECLARE_MESSAGE_MAP()

private:
    void Add_Label(RVStatic& label, const char* text, const RECT& place);
    void Show_List(RVResourceLoader& items);
    void Show_Kinds(RVResourceLoader& items);
    void Show_Colors(RVResourceLoader& items);

    static int Order(int column, CString first_text, LONG first, CString second_text, LONG second,
                     LONG value);

    const Document& m_Document;
    RVString m_List_Name{"attachments"};
    RVStatic m_Heading, m_Kinds_Label, m_Colors_Label;
    RVListCtrl m_List;
    RVListBox m_Kinds;
    RVColorCellCtrl m_Colors[3] = {RVColorCellCtrl(RGB(0, 96, 160)),
                                   RVColorCellCtrl(RGB(230, 160, 30)),
                                   RVColorCellCtrl(RGB(40, 140, 70))};
    KindPane m_New_Kind;
};

}  // namespace workbench
