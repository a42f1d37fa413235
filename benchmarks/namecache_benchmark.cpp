// The name cache beside standard and Abseil tables under the lock that they would need.

#include <RVUtils/namecache.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include "ratio_main.h"

#if defined(BENCH_WITH_ABSEIL)
#include <absl/container/flat_hash_map.h>
#endif

namespace {

using rv_bench::At_Most_Times;
using rv_bench::Set_Bar;

// Ids and names of an application: ids that grew with time and lost some, names with much in
// common. In random order.
struct Data {
    explicit Data(std::size_t count) {
        std::mt19937 random(1);
        ULONG id = 1000;
        for (std::size_t i = 0; i < count; ++i) {
            id += 1 + static_cast<ULONG>(random() % 4);
            ids.push_back(id);
            const std::string name = "Part " + std::to_string(random() % 100'000'000);
            names.emplace_back(name.c_str());
        }
        std::shuffle(ids.begin(), ids.end(), random);
    }

    std::vector<ULONG> ids;
    std::vector<RVString> names;
};

const Data& Data_Of(std::size_t count) {
    static std::unordered_map<std::size_t, Data> all;
    return all.try_emplace(count, count).first->second;
}

// What an application would write instead.
template <class Table>
class LockedTable {
public:
    void Add_Association(ULONG id, const RVString& name) {
        const std::lock_guard lock(m_Mutex);
        m_Table[id] = name;
    }
    int Get_Association(ULONG id, RVString& name) {
        const std::lock_guard lock(m_Mutex);
        const auto found = m_Table.find(id);
        if (found == m_Table.end()) return 0;
        name = found->second;
        return 1;
    }
    std::size_t Scan() {
        const std::lock_guard lock(m_Mutex);
        std::vector<std::pair<ULONG, RVString>> items(m_Table.begin(), m_Table.end());
        std::stable_sort(items.begin(), items.end(), [](const auto& left, const auto& right) {
            return left.second.Compare(right.second) < 0;
        });
        benchmark::DoNotOptimize(items.data());
        return items.size();
    }

private:
    std::recursive_mutex m_Mutex;
    Table m_Table;
};

class Cache : public RVNameCache {
public:
    void Add_Association(ULONG id, const RVString& name) {
        RVNameCache::Add_Association(id, const_cast<RVString&>(name));
    }
    std::size_t Scan() {
        Start_Scan();
        Stop_Scan();
        return 1;
    }
};

using StandardTable = LockedTable<std::unordered_map<ULONG, RVString>>;
#if defined(BENCH_WITH_ABSEIL)
using FlatTable = LockedTable<absl::flat_hash_map<ULONG, RVString>>;
#endif

template <class Table>
void Fill(Table& table, const Data& data) {
    for (std::size_t i = 0; i < data.ids.size(); ++i)
        table.Add_Association(data.ids[i], data.names[i]);
}

template <class Table>
void Get(benchmark::State& state, std::size_t count, bool hit) {
    const Data& data = Data_Of(count);
    Table table;
    Fill(table, data);
    RVString name;
    std::size_t at = 0;
    int found = 0;
    for (auto _ : state) {
        const ULONG id = data.ids[at];
        found += table.Get_Association(hit ? id : id | 0x80000000, name);
        at = at + 1 == count ? 0 : at + 1;
    }
    if ((found > 0) != hit) state.SkipWithError("wrong result");
    state.SetItemsProcessed(state.iterations());
}

template <class Table>
void Add(benchmark::State& state, std::size_t count) {
    const Data& data = Data_Of(count);
    for (auto _ : state) {
        Table table;
        Fill(table, data);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(count));
}

template <class Table>
void Scan(benchmark::State& state, std::size_t count) {
    Table table;
    Fill(table, Data_Of(count));
    for (auto _ : state)
        benchmark::DoNotOptimize(table.Scan());
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(count));
}

// Three look-ups to one name added, in each of two threads.
template <class Table>
void Use_In_Two_Threads(benchmark::State& state) {
    constexpr std::size_t kCount = 100'000;
    const Data& data = Data_Of(kCount);
    Table table;
    Fill(table, data);
    const auto use = [&](std::size_t first) {
        RVString name;
        for (std::size_t i = 0; i < kCount; ++i) {
            const std::size_t at = (first + i) % kCount;
            if (i % 4 == 0)
                table.Add_Association(data.ids[at], data.names[i]);
            else
                table.Get_Association(data.ids[at], name);
        }
    };
    for (auto _ : state) {
        std::thread other(use, kCount / 2);
        use(0);
        other.join();
    }
    state.SetItemsProcessed(state.iterations() * 2 * static_cast<std::int64_t>(kCount));
}

const bool g_Registered = [] {
    const auto add = [](const std::string& name, auto... run) {
        benchmark::RegisterBenchmark(name.c_str(), run...);
    };
    for (const std::size_t count : {1'000, 100'000, 1'000'000}) {
        const std::string ids = std::to_string(count) + " ids";
        for (const bool hit : {true, false}) {
            const std::string name =
                (hit ? "Get_Association, hit, " : "Get_Association, miss, ") + ids;
            add(name + "/ours", Get<Cache>, count, hit);
#if defined(BENCH_WITH_ABSEIL)
            add(name + "/flat_hash_map", Get<FlatTable>, count, hit);
#endif
            Set_Bar({name, At_Most_Times(2), 0, {}});
        }
        const std::string scan = "Start_Scan, " + ids;
        add(scan + "/ours", Scan<Cache>, count);
        add(scan + "/vector, stable_sort", Scan<StandardTable>, count);
        Set_Bar({scan, At_Most_Times(1.5), 0, {}});
    }
    add("Add_Association, 1000000 ids/ours", Add<Cache>, 1'000'000);
    add("Add_Association, 1000000 ids/unordered_map", Add<StandardTable>, 1'000'000);
    add("two threads of look-ups and adds/ours", Use_In_Two_Threads<Cache>);
    add("two threads of look-ups and adds/unordered_map", Use_In_Two_Threads<StandardTable>);
    return Set_Bar({"Add_Association, 1000000 ids", 1, 0, {}}) &&
           Set_Bar({"two threads of look-ups and adds", 1, 0, {}});
}();

}  // namespace
