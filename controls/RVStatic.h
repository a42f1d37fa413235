// A label in colours of its own.
#pragma once

#include "../frame/export.h"
#include "../platform/mfc/CBrush.h"
#include "../platform/mfc/CDC.h"
#include "../platform/mfc/CStatic.h"

// Its text is black and its background that of a button, until it is told otherwise. Colours can
// be set before there is a window. The parent needs an object, too: it hands the question for the
// colours back.
class RVUTILS_API RVStatic : public CStatic {
public:
    RVStatic();
    ~RVStatic() override;

    // The label is painted again, where there is one.
    void Set_Text_Color(COLORREF color);
    void Set_Background_Color(COLORREF color);

protected:
    // Sets the colours of the text. The brush is the control's own.
    HBRUSH CtlColor(CDC* device, UINT kind);

    DECLARE_MESSAGE_MAP()

private:
    void Repaint();

    COLORREF m_Text_Color = 0;
    COLORREF m_Background_Color;
    CBrush m_Background_Brush;
};
