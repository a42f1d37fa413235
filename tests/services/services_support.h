// What the tests of shared things and their child processes agree on.
#pragma once

#include <RVUtils/winapi.h>

#include <atomic>
#include <stdexcept>
#include <string>

#include "child_process.h"

namespace rv_test {

inline GUID Guid_Of(ULONG number) {
    return {number, 0x1234, 0xABCD, {0, 1, 2, 3, 0xFC, 0xFD, 0xFE, 0xFF}};
}

constexpr ULONG kArenaGuid = 1;
constexpr ULONG kMostWorkers = 4;

// Where processes tell that they hold a mutex. Each has a number of its own.
struct Arena {
    std::atomic<ULONG> inside;
    std::atomic<ULONG> collisions;
    std::atomic<ULONG> entered[kMostWorkers];
};

// The one of all processes of a test, from now on to the end of this process.
inline Arena* Open_Arena() {
    HANDLE const mapping = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                              sizeof(Arena), "rv_test arena");
    return static_cast<Arena*>(MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, 0));
}

constexpr char kBlockName[] = "rv_test block";

constexpr struct {
    const char* name;
    ULONG size;
} kTraffic[] = {{"rv_test 1", 1},       {"rv_test 7", 7},         {"rv_test 64", 64},
                {"rv_test 5000", 5000}, {"rv_test 70000", 70000}, {"rv_test MB", 1 << 20}};
constexpr int kTrafficRounds = 300;

inline ChildProcess Start(const char* command, ULONG number) {
    return ChildProcess("tests_services_child", {command, std::to_string(number)});
}

// The same for one that holds what it is about when this returns, unless it cannot be had.
inline ChildProcess Start_Holding(const char* command, ULONG number) {
    ChildProcess child = Start(command, number);
    if (child.Read() != 'h') throw std::runtime_error(std::string(command) + " does not hold");
    return child;
}

}  // namespace rv_test
