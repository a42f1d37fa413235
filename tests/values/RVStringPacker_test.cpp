// Lists in one text: by a table, and where memory fails.
#include <RVUtils/Allocation.h>
#include <RVUtils/RVStringPacker.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "allocation_sweep.h"
#include "texts.h"

namespace {

using Items = std::vector<std::string>;

using rv_test::Sweep_Exceptions;
using rv_test::Text;
using rv_test::To_RVString;

Items Unpacked(const RVStringPacker& packer, const std::string& delimiter = "\\") {
    CStringArray array;
    array.Add("goes");
    packer.Unpack(array, To_RVString(delimiter));
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
    const struct {
        Items packed;
        std::string text;
        Items unpacked;
    } kRows[] = {{{}, "", {}},
                 {{""}, "", {""}},
                 {{"", "x"}, "\\x", {"", "x"}},
                 {{"x", ""}, "x\\", {"x", ""}},
                 {{"", "", ""}, "\\\\", {"", "", ""}},
                 {{"a\\b", "c"}, "a\\b\\c", {"a", "b", "c"}},
                 {{"longer than 15 bytes", "\0\xff"s},
                  "longer than 15 bytes\\\0\xff"s,
                  {"longer than 15 bytes", "\0\xff"s}}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.text);
        RVStringPacker packer(RVString("before")), assigned;
        packer.Empty();
        for (const std::string& item : row.packed)
            packer.Pack(To_RVString(item), "\\");
        EXPECT_EQ(Text(static_cast<RVString>(packer)), row.text);
        Expect_Items(packer, row.unpacked);
        Expect_Items(assigned = packer, row.unpacked);
        assigned.Set(To_RVString(row.text));
        Expect_Items(assigned, row.text.empty() ? Items() : row.unpacked);
        // By other delimiters, the empty one among them, it is one item.
        for (const char* delimiter : {"", "\\\\\\", "-"})
            EXPECT_EQ(Unpacked(packer, delimiter).size(), row.packed.empty() ? 0u : 1u);
    }
    EXPECT_EQ(Unpacked(RVString("a--b---c--"), "--"), (Items{"a", "b", "-c", ""}));
}

TEST(RVStringPacker, TakesTheMemoryItNeedsAndStaysAsItWasWithout) {
    const std::string text(20, 'i');
    const RVString item = To_RVString(text), two_bytes = "--",
                   packed = To_RVString(std::string(1000, '\\') + text);
    const RVStringPacker other(item), list(packed);
    RVStringPacker packer;
    const auto reset = [&] {
        packer.Empty();
        packer.Pack("thirteen byte", two_bytes);
    };
    const auto check = [&] { Expect_Items(packer, {"thirteen byte"}); };
    reset();  // so that a delimiter has room, and an item has not
    EXPECT_EQ(Sweep_Exceptions([&] { packer.Pack(item, two_bytes); }, check), 1);
    Expect_Items(packer, {"thirteen byte--" + text});
    reset();
    EXPECT_EQ(Sweep_Exceptions([&] { packer.Set(item); }, check), 1);
    reset();
    EXPECT_EQ(Sweep_Exceptions([&] { packer = other; }, check), 1);

    CStringArray items;
    const auto unpack = [&] { list.Unpack(items, "\\"); };
    EXPECT_EQ(Sweep_Exceptions(unpack, [&] { EXPECT_EQ(items.GetSize(), 0); }),
              2);  // the array, and one item
    EXPECT_EQ(items.GetSize(), 1001);
    EXPECT_EQ(Sweep_Exceptions([&] { EXPECT_EQ(Text(list[1000]), text); }), 1);
}

}  // namespace
