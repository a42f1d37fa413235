// A registry as the text that registry editors export.
//
//     Windows Registry Editor Version 5.00
//
//     [HKEY_LOCAL_MACHINE\Software\Some Maker]
//     @="text of the value without name"
//     "Name"="text, with \\ for a backslash and \" for a quotation mark"
//     "Number"=dword:000001ff
//     "Bytes"=hex:01,02,03
//     "Paths"=hex(7):61,00,00,00,00,00
//
// The first line must be there, each line must have its end, LF or CRLF, and there must be a key. A
// line that begins with a semicolon is a comment, and blanks around a line do not count. hex(n) is
// a value of type n, a number of base 16; of types 1, 2 and 7, which are texts, the bytes are
// UTF-16. A backslash behind a comma takes the bytes on to the next line. A byte of such a text
// that is not UTF-8 stands there as the lone unit U+DC00 + byte. Texts and names are bytes
// otherwise, UTF-8 by custom. [-key] takes away what the lines above made of a key and all below
// it, "Name"=- a value, and of two values of a name the second one counts.
//
// What is written has no comments but two: one in the second line, and one in the last, which it
// promises. A file that has the first must have the other, so none is whole that was cut off.
#pragma once

#include "registry_tree.h"

namespace rv::registry {

struct Fault {
    std::size_t line = 0;
    const char* what = nullptr;  // and what to do; null when the text is a registry
};

// Reads a text into an empty registry, which may hold anything behind a fault. Takes time by the
// length of the text, whatever it is. May throw std::bad_alloc.
[[nodiscard]] Fault Read_Text(std::string_view text, Key& top);

// May throw std::bad_alloc.
[[nodiscard]] Text Written_Text(const Key& top);

}  // namespace rv::registry
