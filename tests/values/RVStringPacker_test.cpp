// Lists in one text: by a table, against a plain split, and where memory fails.
#include <RVUtils/Allocation.h>
#include <RVUtils/RVStringPacker.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "allocation_sweep.h"

namespace {

using Items = std::vector<std::string>;

RVString Text(const std::string& text) {
    return CString(text.data(), static_cast<int>(text.size()));
}

std::string Text(const CString& text) {
    return {text.GetString(), static_cast<std::size_t>(text.GetLength())};
}

Items Unpacked(const RVStringPacker& packer, const std::string& delimiter = "\\") {
    CStringArray array;
    array.Add("goes");
    packer.Unpack(array, Text(delimiter));
    Items items;
    for (INT_PTR i = 0; i < array.GetSize(); ++i)
        items.push_back(Text(array[i]));
    return items;
}

// Both ways of reading give the items, and nothing else.
void Expect_Items(const RVStringPacker& packer, const Items& items) {
    EXPECT_EQ(Unpacked(packer), items);
    const int count = static_cast<int>(items.size());
    for (const int index : {-2147483647 - 1, -1, count, count + 1, 2147483647})
        EXPECT_TRUE(packer[index].IsEmpty()) << index;
    for (int index = 0; index < count; ++index)
        EXPECT_EQ(Text(packer[index]), items[static_cast<std::size_t>(index)]);
}

TEST(RVStringPacker, PacksAndUnpacks) {
    using namespace std::string_literals;
    const std::string longer(40, 'x');
    const struct {
        const char* why;
        Items packed;
        std::string text;
        Items unpacked;
    } kRows[] = {
        {"nothing", {}, "", {}},
        {"one empty item", {""}, "", {""}},
        {"an empty one first", {"", "x"}, "\\x", {"", "x"}},
        {"an empty one last", {"x", ""}, "x\\", {"x", ""}},
        {"empty ones only", {"", "", ""}, "\\\\", {"", "", ""}},
        {"the delimiter inside", {"a\\b", "c"}, "a\\b\\c", {"a", "b", "c"}},
        {"NUL and high bytes", {"a\0b"s, "\xff"}, "a\0b\\\xff"s, {"a\0b"s, "\xff"}},
        {"longer ones", {longer, "", longer}, longer + "\\\\" + longer, {longer, "", longer}}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        RVStringPacker packer(RVString("before"));
        packer.Empty();
        for (const std::string& item : row.packed)
            packer.Pack(Text(item), "\\");
        EXPECT_EQ(Text(static_cast<RVString>(packer)), row.text);
        Expect_Items(packer, row.unpacked);
        Expect_Items(RVStringPacker(packer), row.unpacked);
        RVStringPacker assigned;
        Expect_Items(assigned = packer, row.unpacked);
        // From the text alone, an empty one holds no item.
        const Items of_text = row.text.empty() ? Items() : row.unpacked;
        Expect_Items(RVStringPacker(Text(row.text)), of_text);
        assigned.Set(Text(row.text));
        Expect_Items(assigned, of_text);
    }
}

TEST(RVStringPacker, SplitsByAnyDelimiter) {
    std::mt19937 random(1);
    const auto any_text = [&](unsigned most) {
        std::string text(random() % most, ' ');
        for (char& character : text)
            character = "ab\\"[random() % 3];
        return text;
    };
    for (int round = 0; round < 3000; ++round) {
        const std::string text = any_text(60) + "a", delimiter = any_text(4);
        Items expected;
        std::string rest = text;
        for (std::size_t at; !delimiter.empty() && (at = rest.find(delimiter)) != rest.npos;) {
            expected.push_back(rest.substr(0, at));
            rest = rest.substr(at + delimiter.size());
        }
        expected.push_back(rest);
        EXPECT_EQ(Unpacked(Text(text), delimiter), expected) << text << " by " << delimiter;
    }
}

// Sweeps an operation that throws when an allocation fails, and gives the number of those.
template <class Operation, class Check>
int Sweep(Operation operation, Check check_after_failure) {
    return rv_test::Sweep_Allocations([&] {
        try {
            operation();
        } catch (CMemoryException* exception) {
            exception->Delete();
            check_after_failure();
        }
    });
}

TEST(RVStringPacker, TakesTheMemoryItNeedsAndStaysAsItWasWithout) {
    const std::string text(20, 'i');
    const RVString item = Text(text), two_bytes = "--",
                   packed = Text(std::string(1000, '\\') + text);
    const RVStringPacker other(item), list(packed);
    RVStringPacker packer;
    const auto reset = [&] {
        packer.Empty();
        packer.Pack("thirteen byte", two_bytes);
    };
    const auto check = [&] { Expect_Items(packer, {"thirteen byte"}); };
    reset();  // so that a delimiter has room, and an item has not
    EXPECT_EQ(Sweep([&] { packer.Pack(item, two_bytes); }, check), 1);
    Expect_Items(packer, {"thirteen byte--" + text});
    reset();
    EXPECT_EQ(Sweep([&] { packer.Set(item); }, check), 1);
    reset();
    EXPECT_EQ(Sweep([&] { packer = other; }, check), 1);

    CStringArray items;
    const auto unpack = [&] { list.Unpack(items, "\\"); };
    EXPECT_EQ(Sweep(unpack, [&] { EXPECT_EQ(items.GetSize(), 0); }), 2);  // the array, and one item
    EXPECT_EQ(items.GetSize(), 1001);
    EXPECT_EQ(Sweep([&] { EXPECT_EQ(Text(list[1000]), text); }, [] {}), 1);
}

}  // namespace
