// What a resource script says.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

namespace rv_rc {

// What is wrong, where, and what to do, in one line.
class ScriptError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

using Id = std::uint32_t;

struct Script {
    std::map<Id, std::string> strings;  // in UTF-8, may hold NUL characters
    // Bytes of the files that the script names.
    std::map<Id, std::string> bitmaps;
    std::map<Id, std::string> icons;
    std::map<Id, std::string> cursors;
    std::set<std::string> files;  // all that the script was made of
};

// Reads a script behind the C preprocessor, whose line markers say where each line came from. Files
// are looked for beside the source that names them. Understood are, in capitals:
//
//     STRINGTABLE [options] BEGIN id [,] "text" ... END       also { and }
//     id BITMAP "file"      id ICON "file"      id CURSOR "file"
//     LANGUAGE number, number                                 without effect
//
// Numbers are decimal, octal or hexadecimal, with + - | and brackets. Texts that follow each other
// are one; they know \a \n \r \t \\ \" \ooo \xhhhh and "" for a quotation mark. A text is UTF-8.
//
// Throws ScriptError, also for an image that is damaged.
[[nodiscard]] Script Read_Script(std::string_view preprocessed, const std::string& name);

// The C++ source of the module's table.
[[nodiscard]] std::string Table_Source(const Script& script);

}  // namespace rv_rc
