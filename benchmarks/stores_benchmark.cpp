// Links and packed texts beside the standard containers that an application would take instead.

#include <RVUtils/Allocation.h>
#include <RVUtils/DwordCrossRef.h>
#include <RVUtils/RVStringPacker.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "ratio_main.h"

namespace {

using rv_bench::Add_Figure;
using rv_bench::Set_Bar;

constexpr std::size_t kMillion = 1'000'000;

void Set_Items(benchmark::State& state, std::size_t items) {
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(items));
}

// --- links ---------------------------------------------------------------------------------------

struct Link {
    ULONG key;
    ULONG referenced_id;
};

// A million links in random order, from keys that grew with time and lost some.
struct Data {
    explicit Data(std::size_t key_count) {
        std::mt19937 random(1);
        ULONG key = 1000;
        while (keys.size() < key_count)
            keys.push_back(key += 1 + static_cast<ULONG>(random() % 4));
        for (std::size_t i = 0; i < kMillion; ++i)
            links.push_back({keys[i % key_count], static_cast<ULONG>(random())});
        std::shuffle(links.begin(), links.end(), random);
        std::shuffle(keys.begin(), keys.end(), random);
    }

    std::vector<ULONG> keys;
    std::vector<Link> links;
};

const Data& Data_Of(std::size_t key_count) {
    static std::map<std::size_t, Data> all;
    return all.try_emplace(key_count, key_count).first->second;
}

// What an application would write instead.
class StandardLinks {
public:
    void Add_Link(ULONG key, ULONG referenced_id) { m_Links[key].push_back(referenced_id); }
    bool Get_Ref_List(ULONG key, std::vector<ULONG>& ids) {
        const auto found = m_Links.find(key);
        const bool there = found != m_Links.end();
        there ? void(ids = found->second) : ids.clear();
        return there;
    }
    bool Get_Ref_List(ULONG key, CList<ULONG, ULONG>& list) {
        list.RemoveAll();
        const auto found = m_Links.find(key);
        if (found == m_Links.end()) return false;
        for (const ULONG id : found->second)
            list.AddTail(id);
        return true;
    }

private:
    std::unordered_map<ULONG, std::vector<ULONG>> m_Links;
};

template <class Links>
void Fill(Links& links, const Data& data) {
    for (const Link& link : data.links)
        links.Add_Link(link.key, link.referenced_id);
}

template <class Links>
void Add(benchmark::State& state, std::size_t key_count) {
    const Data& data = Data_Of(key_count);
    for (auto _ : state) {
        Links links;
        Fill(links, data);
    }
    Set_Items(state, kMillion);
}

// The lists of all keys, one after the other.
template <class Links, class List>
void Get(benchmark::State& state, std::size_t key_count) {
    const Data& data = Data_Of(key_count);
    Links links;
    Fill(links, data);
    for (auto _ : state) {
        for (const ULONG key : data.keys) {
            List list;
            if (!links.Get_Ref_List(key, list)) state.SkipWithError("a list is not there");
            benchmark::DoNotOptimize(&list);
        }
    }
    Set_Items(state, kMillion);
}

const bool g_LinksRegistered = [] {
    const auto add = [](const std::string& name, auto... run) {
        benchmark::RegisterBenchmark(name.c_str(), run...)->Unit(benchmark::kMillisecond);
    };
    using List = CList<ULONG, ULONG>;
    for (const std::size_t keys : {std::size_t{10}, std::size_t{10'000}, kMillion}) {
        const std::string rest = ", a million links, " + std::to_string(keys) + " keys";
        const std::string adding = "Add_Link" + rest, getting = "Get_Ref_List" + rest;
        add(adding + "/ours", Add<RVDwordCrossRef>, keys);
        add(adding + "/unordered_map", Add<StandardLinks>, keys);
        Set_Bar({adding, 1, 0, {}});
        add(getting + "/ours", Get<RVDwordCrossRef, List>, keys);
        add(getting + "/unordered_map to CList", Get<StandardLinks, List>, keys);
        // Told for comparison: a copy of a vector is no list.
        add(getting + "/unordered_map to vector", Get<StandardLinks, std::vector<ULONG>>, keys);
        Set_Bar({getting, 1, 0, {"unordered_map to CList"}});
    }
    return true;
}();

// --- packed texts --------------------------------------------------------------------------------

std::vector<std::string> Column_Widths(std::size_t count) {
    std::mt19937 random(1);
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < count; ++i)
        texts.push_back(std::to_string(random() % 1000));
    return texts;
}

RVStringPacker Packed(std::size_t count) {
    RVStringPacker packer;
    for (const std::string& text : Column_Widths(count))
        packer.Pack(text.c_str(), "\\");
    return packer;
}

void Pack(benchmark::State& state, std::size_t count) {
    std::vector<RVString> items;
    for (const std::string& text : Column_Widths(count))
        items.emplace_back(text.c_str());
    const RVString delimiter("\\");
    for (auto _ : state) {
        RVStringPacker packer;
        for (const RVString& item : items)
            packer.Pack(item, delimiter);
        benchmark::DoNotOptimize(&packer);
    }
    Set_Items(state, count);
}

void Pack_To_String(benchmark::State& state) {
    const std::vector<std::string> items = Column_Widths(kMillion);
    for (auto _ : state) {
        std::string packed;
        for (const std::string& item : items) {
            if (!packed.empty()) packed += '\\';
            packed += item;
        }
        benchmark::DoNotOptimize(packed.data());
    }
    Set_Items(state, kMillion);
}

void Unpack(benchmark::State& state, std::size_t count) {
    const RVStringPacker packer = Packed(count);
    const RVString delimiter("\\");
    for (auto _ : state) {
        CStringArray items;
        packer.Unpack(items, delimiter);
        if (items.GetSize() != static_cast<INT_PTR>(count)) state.SkipWithError("wrong result");
    }
    Set_Items(state, count);
}

void Unpack_From_String(benchmark::State& state) {
    const std::string packed = static_cast<RVString>(Packed(kMillion)).GetString();
    for (auto _ : state) {
        std::vector<std::string> items;
        std::size_t start = 0;
        for (std::size_t end; (end = packed.find('\\', start)) != packed.npos; start = end + 1)
            items.emplace_back(packed, start, end - start);
        items.emplace_back(packed, start);
        if (items.size() != kMillion) state.SkipWithError("wrong result");
    }
    Set_Items(state, kMillion);
}

// The tenth item of a text of so many.
void Index(benchmark::State& state, std::size_t count) {
    const RVStringPacker packer = Packed(count);
    for (auto _ : state)
        benchmark::DoNotOptimize(packer[9].GetLength());
    Set_Items(state, 1);
}

int s_Allocations = 0;

double Count_Allocations() {
    const std::string widths(50, '\\'), width(50, 'w');
    const RVStringPacker packer(RVString((widths + width + widths).c_str()));
    AfxSetAllocHook([](std::size_t, BOOL, LONG) -> BOOL { return ++s_Allocations > 0; });
    const RVString item = packer[50];
    AfxSetAllocHook(nullptr);
    return item.GetLength() == 50 ? s_Allocations : -1;
}

const bool g_TextsRegistered = [] {
    const auto add = [](const char* name, auto... run) {
        benchmark::RegisterBenchmark(name, run...);
    };
    // The peer that a bar is about is the same work on a thousandth of the items: in proportion.
    add("Pack, a million items/ours", Pack, kMillion);
    add("Pack, a million items/a thousand", Pack, 1000);
    add("Pack, a million items/string", Pack_To_String);
    add("Unpack, a million items/ours", Unpack, kMillion);
    add("Unpack, a million items/a thousand", Unpack, 1000);
    add("Unpack, a million items/vector of strings", Unpack_From_String);
    add("tenth item of a million/ours", Index, kMillion);
    add("tenth item of a million/of ten", Index, 10);
    constexpr double kInProportion = 0.5;  // memory beyond the caches costs more
    return Set_Bar({"Pack, a million items", kInProportion, 0, {"a thousand"}}) &&
           Set_Bar({"Unpack, a million items", kInProportion, 0, {"a thousand"}}) &&
           Set_Bar({"tenth item of a million", 0.8, 0, {"of ten"}}) &&
           Add_Figure({"memory of operator[]", "allocations an item", 1, Count_Allocations});
}();

}  // namespace
