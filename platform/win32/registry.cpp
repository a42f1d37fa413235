#include "registry.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <new>

#include "error.h"
#include "nothrow_object.h"
#include "registry_store.h"

namespace {

using rv::registry::Key;
using rv::registry::Session;
using rv::registry::Text;
using rv::registry::Value;
using std::string_view;
using Purpose = Session::Purpose;

// What a handle that is no root points to.
struct OpenKey : rv::NothrowObject {
    Text path;  // from the top
    REGSAM access = 0;
};

LSTATUS Status_Of(DWORD error) noexcept {
    return static_cast<LSTATUS>(error);
}

// Null bytes for a handle that is no root.
string_view Root_Of(HKEY key) noexcept {
    constexpr const char* kNames[] = {"HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER",
                                      "HKEY_LOCAL_MACHINE"};
    const auto number = static_cast<std::size_t>(reinterpret_cast<std::intptr_t>(key) - INT32_MIN);
    return number < std::size(kNames) ? rv::registry::Root_Path(kNames[number]) : string_view();
}

bool Is_Root_Handle(HKEY key) noexcept {
    return reinterpret_cast<std::intptr_t>(key) < 0;
}

// What a call works on: a key, and perhaps a path below it.
struct Place {
    Text path;  // from the top
    bool is_key_itself = true;
};

// ERROR_SUCCESS, or what is wrong with the arguments.
DWORD Locate(HKEY key, LPCSTR below, REGSAM access, Place& place) {
    if (!key || (Is_Root_Handle(key) && !Root_Of(key).data())) return ERROR_INVALID_HANDLE;
    string_view rest = below ? below : "";
    if (rest.ends_with('\\')) rest.remove_suffix(1);
    if (!rv::registry::Is_Path(rest)) return ERROR_INVALID_PARAMETER;
    if (Is_Root_Handle(key)) {
        place.path = Root_Of(key);
    } else {
        const auto& open = *reinterpret_cast<const OpenKey*>(key);
        if ((open.access & access) != access) return ERROR_ACCESS_DENIED;
        place.path = open.path;
    }
    place.is_key_itself = rest.empty();
    if (rest.empty()) return ERROR_SUCCESS;
    place.path += '\\';
    place.path += rest;
    const auto levels = std::ranges::count(place.path, '\\');
    return levels > rv::registry::kMostLevels ? ERROR_INVALID_PARAMETER : ERROR_SUCCESS;
}

// The error of a key that is not there.
DWORD Missing_Error(const Place& place) noexcept {
    return place.is_key_itself ? ERROR_KEY_DELETED : ERROR_FILE_NOT_FOUND;
}

// Calls what may lack memory.
template <class Operation>
LSTATUS Guarded(Operation operation) noexcept {
    try {
        return Status_Of(operation());
    } catch (const std::bad_alloc&) {
        return Status_Of(ERROR_NOT_ENOUGH_MEMORY);
    }
}

// Calls `look` with the key.
template <class Look>
LSTATUS Look_At(HKEY key, LPCSTR below, REGSAM access, Look look) noexcept {
    return Guarded([&]() -> DWORD {
        Place place;
        if (const DWORD error = Locate(key, below, access, place); error != ERROR_SUCCESS)
            return error;
        const Session session(Purpose::kLook);
        if (session.Error() != ERROR_SUCCESS) return session.Error();
        const Key* const found = Find(session.Top(), place.path);
        return found ? look(*found, place) : Missing_Error(place);
    });
}

// Calls `change` with the key, and keeps what it does when it gives ERROR_SUCCESS.
template <class Change>
DWORD Change_Key(const Place& place, Change change) {
    Session session(Purpose::kChange);
    if (session.Error() != ERROR_SUCCESS) return session.Error();
    Key* const found = Find(session.Top(), place.path);
    if (!found) return Missing_Error(place);
    const DWORD error = change(session.Top(), *found);
    return error == ERROR_SUCCESS ? session.Keep() : error;
}

DWORD Make_Handle(Text&& path, REGSAM access, HKEY* result) noexcept {
    auto* const open = new (std::nothrow) OpenKey;
    if (!open) return ERROR_NOT_ENOUGH_MEMORY;
    open->path = std::move(path);
    open->access = access;
    *result = reinterpret_cast<HKEY>(open);
    return ERROR_SUCCESS;
}

string_view Name_Of(LPCSTR name) noexcept {
    return name ? name : "";
}

// Whether the value is what it shall become.
bool Has_Value(const Place& place, string_view name, const Value& value) {
    const Session session(Purpose::kLook);
    Key* const key = session.Error() == ERROR_SUCCESS ? Find(session.Top(), place.path) : nullptr;
    if (!key) return false;
    const auto found = key->values.find(name);
    return found != key->values.end() && found->second == value;
}

// Whether the key had to be made.
DWORD Make_Key(const Place& place, bool& made) {
    {
        const Session session(Purpose::kLook);
        if (session.Error() != ERROR_SUCCESS) return session.Error();
        made = !Find(session.Top(), place.path);
        if (!made) return ERROR_SUCCESS;
    }
    Session session(Purpose::kChange);
    if (session.Error() != ERROR_SUCCESS) return session.Error();
    made = !Find(session.Top(), place.path);  // another process may have been faster
    Make(session.Top(), place.path);
    return session.Keep();
}

}  // namespace

LSTATUS RegOpenKeyExA(HKEY key, LPCSTR path, DWORD options, REGSAM access, HKEY* result) noexcept {
    if (options != 0 || !result) return Status_Of(ERROR_INVALID_PARAMETER);
    return Look_At(key, path, 0, [&](const Key&, Place& place) {
        return Make_Handle(std::move(place.path), access, result);
    });
}

LSTATUS RegCreateKeyExA(HKEY key, LPCSTR path, DWORD reserved, LPSTR kind, DWORD options,
                        REGSAM access, SECURITY_ATTRIBUTES* security, HKEY* result,
                        DWORD* disposition) noexcept {
    if (reserved != 0 || kind || options != REG_OPTION_NON_VOLATILE || security || !result)
        return Status_Of(ERROR_INVALID_PARAMETER);
    return Guarded([&]() -> DWORD {
        Place place;
        bool made;
        DWORD error = Locate(key, path, KEY_CREATE_SUB_KEY, place);
        if (error == ERROR_SUCCESS) error = Make_Key(place, made);
        if (error == ERROR_SUCCESS) error = Make_Handle(std::move(place.path), access, result);
        if (error == ERROR_SUCCESS && disposition)
            *disposition = made ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
        return error;
    });
}

LSTATUS RegCloseKey(HKEY key) noexcept {
    if (!key) return Status_Of(ERROR_INVALID_HANDLE);
    if (!Is_Root_Handle(key)) delete reinterpret_cast<OpenKey*>(key);
    return Status_Of(ERROR_SUCCESS);
}

LSTATUS RegQueryInfoKeyA(HKEY key, LPSTR kind, DWORD* kind_length, DWORD* reserved, DWORD* keys,
                         DWORD* longest_key, DWORD* longest_kind, DWORD* values,
                         DWORD* longest_name, DWORD* longest_data, DWORD* security,
                         FILETIME* time) noexcept {
    if (kind || kind_length || reserved || longest_key || longest_kind || longest_name ||
        longest_data || security || time)
        return Status_Of(ERROR_INVALID_PARAMETER);
    return Look_At(key, nullptr, KEY_QUERY_VALUE, [&](const Key& found, const Place&) {
        if (keys) *keys = static_cast<DWORD>(found.keys.size());
        if (values) *values = static_cast<DWORD>(found.values.size());
        return ERROR_SUCCESS;
    });
}

LSTATUS RegEnumKeyExA(HKEY key, DWORD index, LPSTR name, DWORD* length, DWORD* reserved, LPSTR kind,
                      DWORD* kind_length, FILETIME* time) noexcept {
    if (!name || !length || reserved || kind || kind_length || time)
        return Status_Of(ERROR_INVALID_PARAMETER);
    return Look_At(key, nullptr, KEY_ENUMERATE_SUB_KEYS,
                   [&](const Key& found, const Place&) -> DWORD {
                       if (index >= found.keys.size()) return ERROR_NO_MORE_ITEMS;
                       const Text& text = std::next(found.keys.begin(), index)->first;
                       if (text.size() >= *length) return ERROR_MORE_DATA;
                       *length = static_cast<DWORD>(text.copy(name, text.size()));
                       name[text.size()] = '\0';
                       return ERROR_SUCCESS;
                   });
}

LSTATUS RegDeleteKeyA(HKEY key, LPCSTR path) noexcept {
    return Guarded([&]() -> DWORD {
        Place place;
        const DWORD error = Locate(key, path, 0, place);
        if (error != ERROR_SUCCESS) return error;
        if (place.is_key_itself && Is_Root_Handle(key)) return ERROR_ACCESS_DENIED;
        return Change_Key(place, [&](Key& top, const Key& found) -> DWORD {
            if (!found.keys.empty()) return ERROR_ACCESS_DENIED;
            Remove(top, place.path);
            return ERROR_SUCCESS;
        });
    });
}

LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, DWORD* reserved, DWORD* type, BYTE* data,
                         DWORD* size) noexcept {
    if (reserved || (data && !size)) return Status_Of(ERROR_INVALID_PARAMETER);
    return Look_At(key, nullptr, KEY_QUERY_VALUE, [&](const Key& at, const Place&) -> DWORD {
        const auto found = at.values.find(Name_Of(name));
        if (found == at.values.end()) return ERROR_FILE_NOT_FOUND;
        const Value& value = found->second;
        if (type) *type = value.type;
        if (!size) return ERROR_SUCCESS;
        const DWORD room = std::exchange(*size, static_cast<DWORD>(value.data.size()));
        if (data && room < value.data.size()) return ERROR_MORE_DATA;
        if (data) value.data.copy(reinterpret_cast<char*>(data), value.data.size());
        return ERROR_SUCCESS;
    });
}

LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data,
                       DWORD size) noexcept {
    if (reserved != 0 || (!data && size != 0) || !rv::registry::Is_Value_Name(Name_Of(name)))
        return Status_Of(ERROR_INVALID_PARAMETER);
    return Guarded([&]() -> DWORD {
        Place place;
        const DWORD error = Locate(key, nullptr, KEY_SET_VALUE, place);
        if (error != ERROR_SUCCESS) return error;
        Value value{type, Text(reinterpret_cast<const char*>(data), size)};
        if (Has_Value(place, Name_Of(name), value)) return ERROR_SUCCESS;
        return Change_Key(place, [&](Key&, Key& found) {
            const auto at = found.values.find(Name_Of(name));
            if (at != found.values.end())
                at->second = std::move(value);
            else
                found.values.try_emplace(Text(Name_Of(name)), std::move(value));
            return ERROR_SUCCESS;
        });
    });
}

LSTATUS RegDeleteValueA(HKEY key, LPCSTR name) noexcept {
    return Guarded([&]() -> DWORD {
        Place place;
        const DWORD error = Locate(key, nullptr, KEY_SET_VALUE, place);
        if (error != ERROR_SUCCESS) return error;
        return Change_Key(place, [&](Key&, Key& found) -> DWORD {
            const auto at = found.values.find(Name_Of(name));
            if (at == found.values.end()) return ERROR_FILE_NOT_FOUND;
            found.values.erase(at);
            return ERROR_SUCCESS;
        });
    });
}
