// Files of translated strings.
//
// A file is UTF-8 text, one string a line:
//
//     # German of the plant workbench
//     app/57344 = Dokument speichern?
//     17/100 = Zeile 1\nZeile 2
//
// In front of the "=" stand the module's number, or "app" for the application's own, 4294967295,
// and the string's. Blanks around the "=" and at both ends of a line do not count. A line that
// begins with "#" is a comment. A text knows \n \r \t, \s for a blank, \\ and \xHH, which is
// below 80. One that is empty is a string still to be translated. Lines may come in any order, and
// each string once; the last one has its line end, too, which tells that the file is whole.
//
// Each line stands for itself: any editor will do, and lines can be sorted, compared and merged
// without knowledge of what is around them. Numbers, not the texts of the original, are the keys,
// so a correction there costs no translation.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "../../frame/RVString.h"
#include "../../frame/export.h"
#include "../../platform/heap.h"
#include "../../platform/mfc/Allocation.h"

namespace rv {

// The module number of the application's own strings.
inline constexpr ULONG kApplicationModule = 0xFFFFFFFF;

// The strings of one file. What needs memory throws CMemoryException* when there is none.
class ZORLANGMGR_API LanguageFile {
public:
    // One string.
    struct Item {
        ULONG module;           // the numbers that stand
        ULONG string;           // in front of its "="
        std::string_view text;  // in UTF-8, may hold NUL characters; as long as the file object
    };

    // How reading ended; kMissing: there is no such file.
    enum class Result { kRead, kMissing, kRefused };

    // Reads the file `path` in place of what was read before, which stays unless the result is
    // kRead. `fault` then tells in one line why a file was refused: it is damaged, has more than
    // 256 MiB, or the system does not give it.
    [[nodiscard]] Result Read(const char* path, CString& fault);
    // The same of up to 256 MiB in memory. `name` is what a fault begins with.
    [[nodiscard]] Result Parse(HeapText bytes, std::size_t size, const char* name, CString& fault);

    // By ascending module and string.
    std::size_t Count() const noexcept { return m_Entries.size(); }
    Item At(std::size_t index) const noexcept;
    // The text, with null bytes where there is none.
    std::string_view Find(ULONG module, ULONG string) const noexcept;

private:
    struct Entry {
        ULONGLONG key;  // module and string
        ULONG start;    // of its text
        ULONG length;
    };
    using Entries = std::vector<Entry, HeapAllocator<Entry>>;
    class Parser;

    std::string_view Text_Of(const Entry& entry) const noexcept {
        return {m_Bytes.get() + entry.start, entry.length};
    }

    HeapText m_Bytes;
    Entries m_Entries;  // by ascending key
};

// What stands in a file for a text, and for the number of a module.
[[nodiscard]] ZORLANGMGR_API CString Escaped_Text(std::string_view text);
[[nodiscard]] ZORLANGMGR_API CString Module_Name(ULONG module);

}  // namespace rv
