// A language manager that writes down what it is asked, in the place of the one that works.
#pragma once

#include <RVUtils/RVLanguageManager.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace rv_test {

// One for all managers of the program. Only the calls on items may come from several threads.
struct Recording {
    // Each call with its arguments, in order: "make DIRECTORY|TAG", "open 407 1 1", "string 5/7",
    // "image 130", "message 49152 65536 -1", "info", "live 1", "end".
    std::vector<std::string> calls;

    // What it answers.
    std::set<std::pair<std::string, unsigned short>> languages;  // by directory; "*" is each one
    std::map<std::pair<ULONG, ULONG>, std::string> texts;
    std::map<ULONG, void*> images;
    std::map<std::string, std::string> registry;  // by "SECTION/NAME"
    unsigned short user = 0x407;
    unsigned short system = 0x40C;
    bool knows_messages = false;
    std::function<void()> while_asked;  // called inside of each call on an item

    // What was called since the last time.
    std::vector<std::string> Take() { return std::exchange(calls, {}); }
};

Recording& The_Recording();

constexpr unsigned int kToolsMessage = 0xC123;

}  // namespace rv_test
