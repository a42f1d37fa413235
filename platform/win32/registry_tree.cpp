#include "registry_tree.h"

#include <algorithm>

#include "fold.h"

namespace rv::registry {
namespace {

using std::string_view;

constexpr char kSeparator = '\\';

constexpr struct {
    string_view name;
    string_view path;
} kRoots[] = {
    {"HKEY_LOCAL_MACHINE", "HKEY_LOCAL_MACHINE"},
    {"HKEY_CURRENT_USER", "HKEY_CURRENT_USER"},
    {"HKEY_CLASSES_ROOT", "HKEY_LOCAL_MACHINE\\Software\\Classes"},
};

// Names stand in lines of a file.
bool Is_Line(string_view name) noexcept {
    return name.find_first_of(string_view("\r\n\0", 3)) == name.npos;
}

unsigned char Order_Of(char character) noexcept {
    return static_cast<unsigned char>(Folded(character));
}

}  // namespace

bool FoldedLess::operator()(string_view left, string_view right) const noexcept {
    return std::ranges::lexicographical_compare(left, right, {}, Order_Of, Order_Of);
}

string_view Root_Path(string_view name) noexcept {
    const auto root = std::ranges::find_if(
        kRoots, [name](const auto& row) { return Is_Same_Folded(row.name, name); });
    return root == std::end(kRoots) ? string_view() : root->path;
}

bool Is_Path(string_view path) noexcept {
    int levels = 0;
    while (!path.empty()) {
        const bool is_last = path.find(kSeparator) == path.npos;
        const string_view level = Take_Level(path);
        if (level.empty() || level.size() > kLongestKeyName || ++levels > kMostLevels) return false;
        if (!is_last && path.empty()) return false;
        if (!Is_Line(level)) return false;
    }
    return true;
}

bool Is_Value_Name(string_view name) noexcept {
    return name.size() <= kLongestValueName && Is_Line(name);
}

string_view Take_Level(string_view& path) noexcept {
    const std::size_t end = std::min(path.find(kSeparator), path.size());
    const string_view level = path.substr(0, end);
    path.remove_prefix(std::min(end + 1, path.size()));
    return level;
}

Key* Find(Key& top, string_view path) noexcept {
    Key* at = &top;
    while (at && !path.empty()) {
        const auto next = at->keys.find(Take_Level(path));
        at = next == at->keys.end() ? nullptr : &next->second;
    }
    return at;
}

Key& Make(Key& top, string_view path) {
    Key* at = &top;
    while (!path.empty()) {
        const string_view level = Take_Level(path);
        auto next = at->keys.find(level);
        if (next == at->keys.end()) next = at->keys.try_emplace(Text(level)).first;
        at = &next->second;
    }
    return *at;
}

void Remove(Key& top, string_view path) noexcept {
    const std::size_t end = path.rfind(kSeparator);
    const string_view parent = end == path.npos ? string_view() : path.substr(0, end);
    Key* const key = Find(top, parent);
    const string_view name = path.substr(end + 1);
    if (!key) return;
    if (const auto found = key->keys.find(name); found != key->keys.end()) key->keys.erase(found);
}

Key Empty_Registry() {
    Key top;
    for (const auto& root : kRoots)
        Make(top, root.path);
    return top;
}

}  // namespace rv::registry
