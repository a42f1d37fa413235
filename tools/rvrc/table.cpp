// The C++ source of a module's table.
#include <cstdio>

#include "script.h"

namespace rv_rc {
namespace {

// Three digits for each byte that needs it, so that none that follows is taken for one more.
std::string Literal(std::string_view bytes) {
    constexpr std::size_t kBytesALine = 64;
    std::string literal;
    for (std::size_t i = 0; i < bytes.size() || i == 0; i += kBytesALine) {
        literal += "\n        \"";
        for (const char c : bytes.substr(i, kBytesALine)) {
            char escape[8];
            const auto byte = static_cast<unsigned char>(c);
            const bool is_plain = byte >= 0x20 && byte < 0x7F && c != '"' && c != '\\' && c != '?';
            std::snprintf(escape, sizeof escape, is_plain ? "%c" : "\\%03o", byte);
            literal += escape;
        }
        literal += '"';
    }
    return literal;
}

std::string Table(const std::map<Id, std::string>& table, const char* type, const char* name) {
    if (table.empty()) return {};
    std::string source = std::string(type) + " " + name + "[] = {\n";
    for (const auto& [id, content] : table)
        source += "    {" + std::to_string(id) + ", std::string_view(" + Literal(content) +
                  ",\n        " + std::to_string(content.size()) + ")},\n";
    return source + "};\n";
}

std::string Use(const std::map<Id, std::string>& table, const char* name) {
    return table.empty() ? "{}" : name;
}

}  // namespace

std::string Table_Source(const Script& script) {
    return "// Made by the resource compiler.\n"
           "#include <RVUtils/winapi.h>\n"
           "\n"
           "namespace {\n"
           "\n" +
           Table(script.strings, "constexpr rv::StringResource", "kStrings") +
           Table(script.bitmaps, "constexpr rv::BitmapResource", "kBitmaps") +
           Table(script.icons, "rv::IconResource", "g_Icons") +
           Table(script.cursors, "rv::IconResource", "g_Cursors") + "rv::Module g_Module = {" +
           Use(script.strings, "kStrings") + ", " + Use(script.bitmaps, "kBitmaps") + ", " +
           Use(script.icons, "g_Icons") + ", " + Use(script.cursors, "g_Cursors") +
           "};\n"
           "const rv::ModuleEntry g_Entry(g_Module);\n"
           "\n"
           "}  // namespace\n";
}

}  // namespace rv_rc
