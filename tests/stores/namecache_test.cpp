#include <RVUtils/namecache.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <list>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "allocation_sweep.h"
#include "report_recorder.h"
#include "texts.h"

namespace {

using namespace std::string_view_literals;
using rv_test::ReportRecorder;
using rv_test::Reports;
using rv_test::Text;
using Item = std::pair<ULONG, std::string>;
using Items = std::vector<Item>;

void Add(RVNameCache& cache, ULONG id, const std::string& text) {
    RVString name = rv_test::To_RVString(text);
    cache.Add_Association(id, name);
}

// The items that a scan still has to give.
Items Rest(RVNameCache& cache) {
    Items items;
    ULONG id = 0;
    RVString name;
    while (cache.Get_Next_Item(id, name) == 1)
        items.emplace_back(id, Text(name));
    return items;
}

Items Scan(RVNameCache& cache) {
    cache.Start_Scan();
    const Items items = Rest(cache);
    cache.Stop_Scan();
    return items;
}

// The cache with the scan's order as it is defined: a walk over 17 chains, newest first, and an
// insertion in front of the first greater name.
class LiteralCache {
public:
    void Add(ULONG id, const std::string& name) {
        for (Item& item : Chain(id)) {
            if (item.first != id) continue;
            item.second = name;
            return;
        }
        Chain(id).emplace_front(id, name);
    }
    void Remove(ULONG id) {
        Chain(id).remove_if([id](const Item& item) { return item.first == id; });
    }
    const std::string* Find(ULONG id) {
        for (const Item& item : Chain(id))
            if (item.first == id) return &item.second;
        return nullptr;
    }
    Items Scan() const {
        std::list<Item> sorted;
        for (const auto& chain : m_Chains) {
            for (const Item& item : chain) {
                auto at = sorted.begin();
                while (at != sorted.end() && at->second <= item.second)
                    ++at;
                sorted.insert(at, item);
            }
        }
        return {sorted.begin(), sorted.end()};
    }

private:
    std::list<Item>& Chain(ULONG id) {
        const auto number = static_cast<std::int32_t>(id);
        std::int32_t hash = 16807 * (number % 127773) - 2836 * (number / 127773);
        if (hash < 0) hash += 2147483647;
        return m_Chains[hash % 17];
    }

    std::list<Item> m_Chains[17];
};

TEST(NameCache, FindsAndScansLikeTheLiteralOne) {
    // Names with much in common, some of them equal, and some with a NUL or a byte above ASCII.
    constexpr std::string_view kBeginnings[] = {"", "Common text ", "Common text common "};
    constexpr std::string_view kEnds[] = {"", "a", "b", "B", "ab", "aa", "a\xE9", "a\0"sv, "\xE9"};
    std::mt19937 random(20260101);
    for (const int steps : {4000, 12'000}) {
        RVNameCache cache;
        LiteralCache literal;
        // Few ids, so that they come and go again, some of them with the top bit set; then many,
        // dense ones and some that are far apart.
        const auto pick_id = [&] {
            if (steps > 4000)
                return static_cast<ULONG>(random() % 2 ? random() % 5000 : random() & 0xFFFF0003);
            return static_cast<ULONG>((random() % 4 ? 0 : 0xFFFFFF00) +
                                      random() % 64 * (random() % 3));
        };
        for (int step = 1; step <= steps; ++step) {
            const ULONG id = pick_id(), other = pick_id();
            if (random() % 3) {
                std::string name(kBeginnings[random() % std::size(kBeginnings)]);
                name += kEnds[random() % std::size(kEnds)];
                Add(cache, id, name);
                literal.Add(id, name);
            } else {
                cache.Remove_Association(id);
                literal.Remove(id);
            }
            RVString found("untouched");
            const std::string* const known = literal.Find(other);
            ASSERT_EQ(cache.Get_Association(other, found), known != nullptr);
            ASSERT_EQ(Text(found), known ? *known : "untouched");
            if (step % (steps == 4000 ? 50 : 6000) == 0) {
                ASSERT_EQ(Scan(cache), literal.Scan()) << "step " << step;
            }
        }
        cache.Remove_All();
        EXPECT_TRUE(Scan(cache).empty());
        Add(cache, 7, "again");
        EXPECT_EQ(Scan(cache), (Items{{7, "again"}}));
    }
}

TEST(NameCache, ScanStates) {
    ReportRecorder reports;
    RVNameCache cache;
    cache.Stop_Scan();
    ULONG id = 77;
    RVString name("untouched");
    EXPECT_EQ(cache.Get_Next_Item(id, name), 0);
    EXPECT_EQ(reports.Take(), (Reports{{25, "namecache"}})) << "no scan yet";

    Add(cache, 1, "one");
    Add(cache, 2, "two");
    cache.Start_Scan();
    EXPECT_EQ(cache.Get_Next_Item(id, name), 1);
    EXPECT_EQ(reports.Take(), Reports{});
    cache.Stop_Scan();
    cache.Stop_Scan();
    cache.Remove_All();
    EXPECT_EQ(Rest(cache), (Items{{2, "two"}})) << "what the last scan left";
    EXPECT_EQ(reports.Take(), (Reports{{25, "namecache"}, {25, "namecache"}}));

    cache.Start_Scan();
    EXPECT_EQ(cache.Get_Next_Item(id, name), 0);
    EXPECT_EQ(cache.Get_Next_Item(id, name), 0);
    cache.Stop_Scan();
    EXPECT_EQ(id, 1U) << "behind the last item";
    EXPECT_STREQ(name, "one");
    cache.Load_Cache();
    EXPECT_EQ(reports.Take(), (Reports{{16, "namecache"}}));
    cache.Start_Scan();  // left to the destructor
}

// A cache of an application.
struct FilledCache : RVNameCache {
    int Get_Association(ULONG id, RVString& name) override {
        if (Lookup(id, name)) return 1;
        Load_Cache();
        return Lookup(id, name);
    }
    void Load_Cache() override { Add(*this, 5, "five"); }
};

TEST(NameCache, AScanIsStoppedByItsOwnThreadAlone) {
    RVNameCache cache;
    cache.Start_Scan();
    std::thread([&] { cache.Stop_Scan(); }).join();
    ULONG id;
    RVString name = "name";
    ReportRecorder reports;
    EXPECT_EQ(cache.Get_Next_Item(id, name), 0);
    EXPECT_EQ(reports.Take(), Reports()) << "the scan goes on";
    cache.Stop_Scan();
    cache.Stop_Scan();
    std::thread([&] { cache.Add_Association(1, name); }).join();
    EXPECT_EQ(cache.Get_Association(1, name), 1);
}

TEST(NameCache, DerivedCachesLoadThemselves) {
    FilledCache filled;
    RVNameCache& cache = filled;
    RVString name;
    EXPECT_EQ(cache.Get_Association(6, name), 0);
    EXPECT_EQ(cache.Get_Association(5, name), 1);
    EXPECT_STREQ(name, "five");
}

TEST(NameCache, WithoutMemoryItIsAsItWas) {
    const std::string long_name(100, 'n');
    RVNameCache cache;
    for (ULONG id = 0; id < 12; ++id)  // the next one needs more room everywhere
        Add(cache, id, long_name);
    const Items before = Scan(cache);
    const auto add = [&] {
        Add(cache, 50, long_name);
        cache.Remove_Association(50);
    };
    EXPECT_GT(rv_test::Sweep_Exceptions(add), 0);
    EXPECT_EQ(Scan(cache), before);

    // The lock stays with this thread until the scan is stopped.
    const auto scan = [&] {
        struct Stop {
            ~Stop() { cache.Stop_Scan(); }
            RVNameCache& cache;
        } stop = {cache};
        cache.Start_Scan();
    };
    EXPECT_GT(rv_test::Sweep_Exceptions(scan), 0);
    EXPECT_EQ(Scan(cache), before);
    std::thread([&] { EXPECT_EQ(Scan(cache), before); }).join();
}

TEST(NameCacheThreads, AScanSeesOneMoment) {
    constexpr ULONG kWriters = 4, kNames = 1500, kReaders = 3;
    RVNameCache cache;
    std::atomic<bool> done = false;
    std::vector<std::thread> threads;
    // Each writer adds its ids in ascending order and renames the one before.
    for (ULONG writer = 0; writer < kWriters; ++writer) {
        threads.emplace_back([&cache, writer] {
            for (ULONG i = 0; i < kNames; ++i) {
                const ULONG id = writer * kNames + i;
                Add(cache, id, "new " + std::to_string(id));
                if (i > 0) Add(cache, id - 1, "old " + std::to_string(id - 1));
            }
        });
    }
    for (ULONG reader = 0; reader < kReaders; ++reader) {
        threads.emplace_back([&cache, &done] {
            RVString name;
            for (ULONG id = 0; !done; id = (id + 7919) % (kWriters * kNames)) {
                if (!cache.Get_Association(id, name)) continue;
                ASSERT_STREQ(name.Mid(4), std::to_string(id).c_str());
            }
        });
    }
    threads.emplace_back([&cache, &done] {
        for (std::size_t count = 0; count < kWriters * kNames;) {
            const Items items = Scan(cache);
            ASSERT_GE(items.size(), count);
            count = items.size();
            std::vector<bool> seen(kWriters * kNames);
            std::vector<int> fresh(kWriters);
            for (std::size_t i = 0; i < items.size(); ++i) {
                ASSERT_TRUE(i == 0 || items[i - 1].second <= items[i].second);
                seen[items[i].first] = true;
                fresh[items[i].first / kNames] += items[i].second[0] == 'n';
            }
            for (ULONG id = 1; id < kWriters * kNames; ++id) {
                ASSERT_TRUE(id % kNames == 0 || !seen[id] || seen[id - 1]) << "a gap at " << id;
            }
            // The newest one, and the one before it as long as it has its first name.
            for (const int number : fresh)
                ASSERT_LE(number, 2);
        }
        done = true;
    });
    for (std::thread& thread : threads)
        thread.join();
}

}  // namespace
