#include "command_line.h"

int __argc = 0;
char** __argv = nullptr;

// The dynamic linker hands each library what main gets.
[[gnu::constructor]] static void Keep_Command_Line(int count, char** words) {
    __argc = count;
    __argv = words;
}
