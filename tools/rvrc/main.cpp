// The resource compiler: makes a table in C++ of a resource script, where the platform has none of
// its own.
//
//     rvrc PREPROCESSED SCRIPT TABLE.cpp TABLE.d

#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <string>

#include "script.h"

namespace rv_rc {
namespace {

std::string Read_File(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw ScriptError(path + ": cannot be opened; check the name");
    return {std::istreambuf_iterator<char>(file), {}};
}

void Write_File(const std::string& path, const std::string& content) {
    std::ofstream file(path, std::ios::binary);
    file << content;
    file.close();
    if (!file) throw ScriptError(path + ": cannot be written; check the rights and the free space");
}

// What make and ninja read: the table depends on all these files.
std::string Dependencies(const std::string& table, const Script& script) {
    std::string rule = table + ":";
    for (const std::string& file : script.files) {
        rule += " \\\n ";
        for (const char c : file) {
            if (c == ' ' || c == '#') rule += '\\';
            rule += c;
        }
    }
    return rule + "\n";
}

}  // namespace
}  // namespace rv_rc

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fputs("usage: rvrc PREPROCESSED SCRIPT TABLE.cpp TABLE.d\n", stderr);
        return 2;
    }
    try {
        const rv_rc::Script script = rv_rc::Read_Script(rv_rc::Read_File(argv[1]), argv[2]);
        rv_rc::Write_File(argv[3], rv_rc::Table_Source(script));
        rv_rc::Write_File(argv[4], rv_rc::Dependencies(argv[3], script));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
