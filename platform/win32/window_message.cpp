#include "window_message.h"

#include <strings.h>

#include <cstring>
#include <mutex>
#include <new>

#include "error.h"
#include "nothrow_object.h"

namespace {

constexpr UINT kFirst = 0xC000;
constexpr UINT kLast = 0xFFFF;
constexpr std::size_t kLongestName = 255;

struct Message : rv::NothrowObject {
    Message* next;
    UINT number;
    char name[kLongestName + 1];
};

std::mutex g_Mutex;
Message* g_Newest = nullptr;

UINT Refuse(DWORD error) noexcept {
    SetLastError(error);
    return 0;
}

}  // namespace

UINT RegisterWindowMessageA(LPCSTR name) noexcept {
    const std::size_t length = name ? std::strlen(name) : 0;
    if (length == 0 || length > kLongestName) return Refuse(ERROR_INVALID_PARAMETER);
    const std::lock_guard lock(g_Mutex);
    for (const Message* at = g_Newest; at; at = at->next)
        if (strcasecmp(at->name, name) == 0) return at->number;
    const UINT number = g_Newest ? g_Newest->number + 1 : kFirst;
    Message* const added = number > kLast ? nullptr : new (std::nothrow) Message;
    if (!added) return Refuse(ERROR_NOT_ENOUGH_MEMORY);
    added->next = g_Newest;
    added->number = number;
    std::memcpy(added->name, name, length + 1);
    g_Newest = added;
    return number;
}
