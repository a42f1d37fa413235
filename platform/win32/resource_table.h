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
    if (!table.empty() && id >= table.front().id) {
        // Each number stands no farther from the first than its distance from that, and where none
        // is left out, just there.
        const std::size_t distance = id - table.front().id;
        if (distance < table.size() && table[distance].id == id) return &table[distance];
        const auto rest = table.first(std::min(table.size(), distance));
        const auto found = std::ranges::lower_bound(rest, id, {}, &Resource::id);
        if (found != rest.end() && found->id == id) return &*found;
    }
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
