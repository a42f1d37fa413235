// Blocks between objects and processes.
#include <RVUtils/RVSharedMemory.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "allocation_sweep.h"
#include "services_support.h"

namespace {

using namespace rv_test;

constexpr ULONG kPage = 4096;

// Bytes of a block; "(none)" when they cannot be read.
std::string Content(RVSharedMemory& block, ULONG count) {
    std::string bytes(count, '?');
    return block.Read(bytes.data(), count) ? bytes : "(none)";
}

bool Is_There(const char* name) {
    return RVSharedMemory(true).Open(name);
}

TEST(RVSharedMemory, GivesWhatAnotherObjectWrote) {
    RVSharedMemory maker(true), reader(true), second(true);
    ASSERT_TRUE(maker.Create(kBlockName, 10) && reader.Open(kBlockName));
    EXPECT_EQ(Content(reader, 10), std::string(10, '\0'));
    EXPECT_TRUE(maker.Write("some", 4));
    EXPECT_EQ(Content(reader, 4), "some");
    EXPECT_TRUE(reader.Read(nullptr, 0) && reader.Write(nullptr, 0));
    EXPECT_TRUE(second.Create(kBlockName, 3));
    EXPECT_EQ(Content(maker, 4), std::string("\0\0\0e", 4)) << "cleared as far as asked for";
}

TEST(RVSharedMemory, CopiesNoMoreThanTheBlockHas) {
    for (const ULONG size : {ULONG{1}, kPage, kPage + 1}) {
        RVSharedMemory block(true);
        ASSERT_TRUE(block.Create(kBlockName, size));
        const ULONG room = (size + kPage - 1) / kPage * kPage;
        std::string bytes(room + 1, 'b');
        EXPECT_FALSE(block.Write(bytes.data(), room + 1) || block.Write(bytes.data(), 0xFFFFFFFF));
        EXPECT_EQ(Content(block, room), std::string(room, '\0')) << "nothing was written";
        EXPECT_FALSE(block.Read(bytes.data(), room + 1));
        EXPECT_EQ(bytes, std::string(room + 1, 'b')) << "nothing was read";
        RVSharedMemory larger(true);
        EXPECT_FALSE(larger.Create(kBlockName, room + 1)) << "than the block that is there";
        EXPECT_EQ(Content(larger, 0), "(none)");
    }
}

TEST(RVSharedMemory, RefusesWhatCannotBe) {
    const struct {
        const char* why;
        const char* name;
        ULONG size;
    } kRows[] = {
        {"no byte", kBlockName, 0},
        {"a backslash", "rv\\test", 1},
    };
    RVSharedMemory block(true);
    for (const auto& row : kRows) {
        ASSERT_TRUE(block.Create(kBlockName, 1)) << row.why;
        EXPECT_FALSE(block.Create(row.name, row.size)) << row.why;
        EXPECT_EQ(Content(block, 0), "(none)") << row.why;
        EXPECT_FALSE(block.Write("", 0)) << row.why;
        EXPECT_FALSE(Is_There(kBlockName)) << row.why << ": the block before is let go of";
        EXPECT_FALSE(block.Open(row.name)) << row.why;
    }
}

TEST(RVSharedMemory, EndsWithItsLastCopy) {
    std::optional<RVSharedMemory> first(true), copy, assigned(true);
    ASSERT_TRUE(first->Create(kBlockName, 4) && assigned->Create("rv_test other", 4));
    copy = *first;
    *assigned = *first;
    *assigned = *assigned;
    EXPECT_FALSE(Is_There("rv_test other"));
    EXPECT_TRUE(first->Write("some", 4));
    EXPECT_TRUE(first->Create("rv_test other", 4)) << "the copies keep the block";
    EXPECT_EQ(Content(*copy, 4), "some");
    copy.reset();
    EXPECT_EQ(Content(*assigned, 4), "some");
    assigned.reset();
    EXPECT_FALSE(Is_There(kBlockName));
    EXPECT_TRUE(first->Create(kBlockName, 4));
    EXPECT_EQ(Content(*first, 4), std::string(4, '\0'));
}

TEST(RVSharedMemory, EndsWithItsLastProcess) {
    for (const bool is_killed : {false, true}) {
        ChildProcess maker = Start_Holding("block", 0x64636261);
        std::optional<RVSharedMemory> block(true);
        ASSERT_TRUE(block->Open(kBlockName));
        EXPECT_EQ(Content(*block, 4), "abcd");
        is_killed ? maker.Kill() : void(maker.Write('q') && maker.Wait() == 0);
        EXPECT_EQ(Content(*block, 4), "abcd") << "this process has it still";
        block.reset();
        EXPECT_FALSE(Is_There(kBlockName));
        maker = Start_Holding("block", 1);
        is_killed ? maker.Kill() : void(maker.Write('q') && maker.Wait() == 0);
        EXPECT_FALSE(Is_There(kBlockName));
        block.emplace(true);
        EXPECT_TRUE(block->Create(kBlockName, kPage + 1)) << "it has another size now";
        EXPECT_EQ(Content(*block, kPage + 1), std::string(kPage + 1, '\0'));
    }
}

TEST(RVSharedMemory, IsNeverSeenHalfWritten) {
    std::vector<RVSharedMemory> blocks;
    for (const auto& traffic : kTraffic) {
        blocks.emplace_back(true);
        ASSERT_TRUE(blocks.back().Create(traffic.name, traffic.size));
    }
    std::vector<ChildProcess> processes;
    for (ULONG seed = 0; seed < 8; ++seed)
        processes.push_back(Start("traffic", seed));
    for (ChildProcess& process : processes)
        EXPECT_EQ(process.Wait(), 0);
}

TEST(RVSharedMemory, LetsGoAfterAFailedAllocation) {
    const int failures = Sweep_Allocations([] {
        RVSharedMemory block(true), opened(true);
        const bool created = block.Create(kBlockName, 4);
        const bool found = opened.Open(kBlockName);
        EXPECT_TRUE(created || !found);
        EXPECT_TRUE(Content(block, 4) == std::string(4, '\0') || FailingAllocation::Failed());
        block = opened = RVSharedMemory(true);
        AfxSetAllocHook(nullptr);
        EXPECT_FALSE(Is_There(kBlockName));
    });
    EXPECT_GE(failures, 4);
}

}  // namespace
