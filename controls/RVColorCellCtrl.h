// A flat rectangle that shows one colour.
#pragma once

#include "../frame/export.h"
#include "../platform/mfc/CButton.h"

// A button that looks like a cell of colour with an etched border, enabled or not; black until it
// is told otherwise. Give it the style BS_OWNERDRAW and a parent that has an object, or the
// system's own button paints over it when it is enabled, pressed or given the focus.
class RVUTILS_API RVColorCellCtrl : public CButton {
public:
    // Black, or of that colour.
    RVColorCellCtrl();
    explicit RVColorCellCtrl(COLORREF color);
    ~RVColorCellCtrl() override;

    // The colour that is shown, or is going to be.
    COLORREF Get_Color() const;
    // A cell that is hidden or disabled shows the colour when it is painted next.
    void Set_Color(COLORREF color);

    // Draws nothing: the cell paints itself.
    void DrawItem(DRAWITEMSTRUCT* item) override;

protected:
    // Paints the cell; that the focus leaves it changes nothing of its looks.
    void OnPaint();
    void OnKillFocus(CWnd* next);

    DECLARE_MESSAGE_MAP()

private:
    COLORREF m_Color = 0;
};
