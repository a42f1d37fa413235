// A push button that gives up the default look when it is disabled.
#pragma once

#include "../frame/export.h"
#include "../platform/mfc/CButton.h"

// Without a window, nothing happens.
class RVUTILS_API RVButton : public CButton {
public:
    ~RVButton() override;

    // Enables or disables the button; a disabled one gives up the default look, too.
    void Enable_Button(int enable);
    // The same, after showing or hiding it.
    void Enable_Button_And_Show(int enable);
    // Takes the default look away for 0. For any other value the look stays as it is: which button
    // has it is the dialog's affair, see pSet_Dialog_Focus. Redraws the button in both cases.
    void Set_Default_Button(int make_default);

    DECLARE_MESSAGE_MAP()
};
