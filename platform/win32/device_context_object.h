// What the handle of a context stands for.
#pragma once

#include "device_context.h"
#include "gdi_object.h"

namespace rv {

class DeviceContext final : public GdiObject {
public:
    DeviceContext(HWND window, const RECT& clip) noexcept : m_Window(window), m_Clip(clip) {}

    HWND const m_Window;  // null for one to measure with
    const RECT m_Clip;
    COLORREF m_TextColor = 0;
    COLORREF m_BackColor = 0xFFFFFF;
    int m_BackMode = OPAQUE;
};

}  // namespace rv
