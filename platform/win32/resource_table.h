// A module's tables, from inside of the layer.
#pragma once

#include <algorithm>
#include <span>

#include "error.h"
#include "module.h"

namespace rv {

// The resource of that number, or null with ERROR_RESOURCE_NAME_NOT_FOUND.
template <class Resource>
[[nodiscard]] Resource* Find_Resource(std::span<Resource> table, UINT id) noexcept {
    const auto found = std::ranges::lower_bound(table, id, {}, &Resource::id);
    if (found != table.end() && found->id == id) return &*found;
    SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    return nullptr;
}

// The same by what MAKEINTRESOURCEA made of the number; a real name is none.
template <class Resource>
[[nodiscard]] Resource* Find_Resource(std::span<Resource> table, LPCSTR name) noexcept {
    const auto id = reinterpret_cast<UINT_PTR>(name);
    return Find_Resource(id > 0xFFFF ? std::span<Resource>() : table, static_cast<UINT>(id));
}

// Ends the icons that were handed out of a table.
void End_Shared_Icons(std::span<IconResource> table) noexcept;

}  // namespace rv
