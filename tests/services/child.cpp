// The other processes of the tests of what processes share.
//
// usage: tests_services_child COMMAND [NUMBER]
//   hold     makes an RVMutex and ends at the first byte that it reads
//   work     takes an RVMutex again and again
//   block    makes a block, writes to it, and ends at the first byte that it reads
//   traffic  reads and writes blocks at random; its exit code tells whether all were whole
// The first three write a byte when they hold what they are about.
#include <RVUtils/RVMutex.h>
#include <RVUtils/RVSharedMemory.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "services_support.h"

namespace {

using namespace rv_test;

void Tell_And_Wait() {
    std::putchar('h');
    std::fflush(stdout);
    std::getchar();
}

int Hold(ULONG number) {
    const RVMutex mutex(Guid_Of(kArenaGuid));
    Arena& arena = *Open_Arena();
    arena.inside = number;
    Tell_And_Wait();
    return arena.inside == number ? 0 : 1;
}

int Work(ULONG number) {
    Arena& arena = *Open_Arena();
    std::putchar('h');
    std::fflush(stdout);
    for (;;) {
        {
            const RVMutex mutex(Guid_Of(kArenaGuid));
            arena.inside = number;
            std::this_thread::yield();
            if (arena.inside != number) ++arena.collisions;
            ++arena.entered[number % kMostWorkers];
        }
        // Who leaves would be the first to enter again.
        std::this_thread::sleep_for(std::chrono::microseconds(10));
    }
}

int Block(ULONG number) {
    RVSharedMemory block(true);
    if (!block.Create(kBlockName, sizeof number) || !block.Write(&number, sizeof number)) return 1;
    Tell_And_Wait();
    return 0;
}

// Every write makes all bytes of a block equal, so every read has to find them equal.
int Traffic(ULONG seed) {
    std::mt19937 random(seed);
    std::vector<RVSharedMemory> blocks;
    for (const auto& traffic : kTraffic) {
        blocks.emplace_back(true);
        if (!blocks.back().Open(traffic.name)) return 1;
    }
    for (int round = 0; round < kTrafficRounds; ++round) {
        const std::size_t at = random() % blocks.size();
        const ULONG size = kTraffic[at].size;
        if (random() % 2 == 0) {
            const std::vector<char> bytes(size, static_cast<char>(random()));
            if (!blocks[at].Write(bytes.data(), size)) return 2;
        } else {
            std::vector<char> bytes(1 + random() % size);
            if (!blocks[at].Read(bytes.data(), static_cast<ULONG>(bytes.size()))) return 3;
            if (std::ranges::count(bytes, bytes[0]) != std::ssize(bytes)) return 4;
        }
    }
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    constexpr struct {
        const char* name;
        int (*run)(ULONG number);
    } kCommands[] = {{"hold", Hold}, {"work", Work}, {"block", Block}, {"traffic", Traffic}};
    for (const auto& command : kCommands) {
        if (count == 3 && std::strcmp(arguments[1], command.name) == 0)
            return command.run(static_cast<ULONG>(std::stoul(arguments[2])));
    }
    return 99;
}
