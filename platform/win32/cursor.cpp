#include "cursor.h"

#include <utility>

#include "error.h"

namespace {

thread_local HCURSOR t_Cursor;

// Only the address counts.
char g_Wait;

}  // namespace

namespace rv {

HCURSOR System_Cursor(LPCSTR name) noexcept {
    if (name == IDC_WAIT) return reinterpret_cast<HCURSOR>(&g_Wait);
    SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    return nullptr;
}

}  // namespace rv

HCURSOR SetCursor(HCURSOR cursor) noexcept {
    return std::exchange(t_Cursor, cursor);
}

HCURSOR GetCursor() noexcept {
    return t_Cursor;
}
