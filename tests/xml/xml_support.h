// What the tests and the fuzz targets of the reader share.
#pragma once

#include <RVUtils/XmlParser.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "literal_reader.h"
#include "scratch.h"
#include "texts.h"

namespace rv_test {

inline RVString Reference(const std::string& path) {
    return To_RVString("FILE://" + path);
}

// Where a value names a temporary file, the file's bytes as the literal reader shows them. Names
// have a fixed form, so that text behind one is told from it.
inline std::string With_Bodies(const std::string& value) {
    constexpr std::string_view kPrefix = "FILE://";
    constexpr std::size_t kName = sizeof("ZORTmp_20001231235959.tmp") - 1;
    const std::size_t at = value.find(kPrefix);
    if (at == std::string::npos) return value;
    const std::size_t path = at + kPrefix.size();
    const std::size_t name = value.find("ZORTmp_", path);
    if (name == std::string::npos || name + kName > value.size()) return value;
    const std::string file = value.substr(path, name + kName - path);
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(file, ignored)) return value;
    return value.substr(0, at) + LiteralReader::Filed(Read_File(file)) + value.substr(name + kName);
}

// Walks a loaded parser from its first item.
inline std::vector<LiteralItem> Walk(RVXmlParser& parser) {
    constexpr ULONG kUntouched = 0xDEADBEEF;
    std::vector<LiteralItem> items;
    RVString name;
    RVString value;
    parser.Reset();
    for (ULONG children = kUntouched; parser.Next(name, value, children); children = kUntouched) {
        LiteralItem item{Text(name), std::nullopt, std::nullopt};
        if (children != kUntouched) {
            item.value = With_Bodies(Text(value));
            item.children = children;
        }
        items.push_back(item);
    }
    return items;
}

// A document of `count` elements with a body each that nobody else's document has.
inline std::string Numbered_Bodies(int document, int count) {
    std::string text;
    for (int body = 0; body < count; ++body)
        text += "<a><![CDATA[" + std::to_string(document * count + body) + "]]></a>";
    return text;
}

// Whether a parser that has loaded that from a file still finds all of them.
inline bool Holds_Numbered_Bodies(RVXmlParser& parser, int document, int count) {
    int body = document * count;
    for (const LiteralItem& item : Walk(parser))
        if (item.value != LiteralReader::Filed(std::to_string(body++))) return false;
    return body == (document + 1) * count;
}

}  // namespace rv_test
