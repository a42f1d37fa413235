#include "profile.h"

#include <algorithm>

#include "descriptor.h"
#include "error.h"
#include "file_text.h"
#include "fold.h"
#include "native_path.h"

namespace {

using std::string_view;

constexpr string_view kWhite = " \t\n\v\f\r";

string_view Trimmed(string_view text) noexcept {
    const std::size_t first = text.find_first_not_of(kWhite);
    if (first == text.npos) return text.substr(0, 0);
    return text.substr(first, text.find_last_not_of(kWhite) + 1 - first);
}

// Takes the next line off a text.
string_view Take_Line(string_view& text) noexcept {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

// The text between the brackets; null bytes when the line has none.
string_view Section_Of(string_view line) noexcept {
    const std::size_t end = line.rfind(']');
    return line.starts_with('[') && end != line.npos ? Trimmed(line.substr(1, end - 1))
                                                     : string_view();
}

string_view Without_Quotes(string_view value) noexcept {
    const bool quoted = value.size() > 1 && value.front() == value.back() &&
                        (value.front() == '"' || value.front() == '\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

// The value, empty when there is none.
string_view Find(string_view text, string_view section, string_view name) noexcept {
    constexpr string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    bool is_inside = false;
    while (!text.empty()) {
        const string_view line = Trimmed(Take_Line(text));
        if (const string_view found = Section_Of(line); found.data()) {
            if (is_inside) break;
            is_inside = rv::Is_Same_Folded(found, section);
        } else if (is_inside && !line.starts_with(';')) {
            const std::size_t equals = std::min(line.find('='), line.size());
            if (!rv::Is_Same_Folded(Trimmed(line.substr(0, equals)), name)) continue;
            return Without_Quotes(Trimmed(line.substr(std::min(equals + 1, line.size()))));
        }
    }
    return {};
}

// Takes the prefix of a base off a number.
UINT Take_Base(string_view& number) noexcept {
    constexpr struct {
        string_view prefix;
        UINT base;
    } kBases[] = {{"0x", 16}, {"0o", 8}, {"0b", 2}};
    for (const auto& row : kBases) {
        if (!number.starts_with(row.prefix)) continue;
        number.remove_prefix(row.prefix.size());
        return row.base;
    }
    return 10;
}

// 16 for what is none.
UINT Digit_Of(char character) noexcept {
    constexpr string_view kDigits = "0123456789abcdef";
    return static_cast<UINT>(std::min(kDigits.find(rv::Folded(character)), kDigits.size()));
}

UINT Number_Of(string_view text) noexcept {
    text = Trimmed(text);
    const bool is_negative = text.starts_with('-');
    if (is_negative || text.starts_with('+')) text.remove_prefix(1);
    const UINT base = Take_Base(text);
    UINT number = 0;
    for (const char character : text) {
        const UINT digit = Digit_Of(character);
        if (digit >= base) break;
        number = number * base + digit;
    }
    return is_negative ? 0 - number : number;
}

DWORD Read(const char* path, rv::FileText& text) noexcept {
    rv::HeapText native;
    DWORD error = rv::Native_Path(path, native);
    if (error != ERROR_SUCCESS) return error;
    const rv::Descriptor file(rv::Open_Text_File(native.get(), error));
    return file.Value() == -1 ? error : rv::Read_Text_File(file.Value(), text);
}

}  // namespace

UINT GetPrivateProfileIntA(LPCSTR section, LPCSTR name, INT missing, LPCSTR path) noexcept {
    rv::FileText text;
    if (const DWORD error = Read(path, text); error != ERROR_SUCCESS) {
        SetLastError(error);
        return static_cast<UINT>(missing);
    }
    const string_view value = Find(text.View(), Trimmed(section), Trimmed(name));
    return value.empty() ? static_cast<UINT>(missing) : Number_Of(value);
}
