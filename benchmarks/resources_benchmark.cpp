// Strings by number, beside the look-ups that an application would have instead.

#include <RVUtils/LanguageFile.h>
#include <RVUtils/RVResourceLoader.h>
#include <benchmark/benchmark.h>
#include <libintl.h>
#include <locale.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "ratio_main.h"

namespace {

using rv_bench::At_Most_Times;
using rv_bench::Set_Bar;

constexpr ULONG kStrings = 100'000;
constexpr ULONG kModule = rv::kApplicationModule;
constexpr unsigned short kLanguage = 0x407;

std::string Original(ULONG id) {
    return "Original text number " + std::to_string(id);
}

std::string Translation(ULONG id) {
    return "\xC3\x9C"
           "bersetzter Text Nummer " +
           std::to_string(id);
}

// Every number once, in an order that no cache of the processor foresees.
std::vector<ULONG> Shuffled(ULONG count) {
    std::vector<ULONG> ids(count);
    for (ULONG id = 0; id < count; ++id)
        ids[id] = id;
    std::shuffle(ids.begin(), ids.end(), std::mt19937(1));
    return ids;
}

// ---- what gettext reads -------------------------------------------------------------------------

void Put(std::string& bytes, std::size_t at, std::uint32_t number) {
    for (std::size_t i = 0; i < 4; ++i)
        bytes[at + i] = static_cast<char>(number >> 8 * i);
}

std::uint32_t Hash(const std::string& text) {
    std::uint32_t hash = 0;
    for (const char c : text) {
        hash = (hash << 4) + static_cast<unsigned char>(c);
        const std::uint32_t high = hash & 0xF0000000;
        if (high != 0) hash ^= high >> 24 ^ high;
    }
    return hash;
}

bool Is_Prime(std::uint32_t number) {
    for (std::uint32_t i = 3; i * i <= number; i += 2)
        if (number % i == 0) return false;
    return number % 2 != 0;
}

// A catalogue of messages, with the table of hashes that msgfmt gives it.
std::string Catalogue(const std::map<std::string, std::string>& messages) {
    constexpr std::size_t kHeader = 28;
    const auto count = static_cast<std::uint32_t>(messages.size());
    std::uint32_t hashes = count * 4 / 3 | 1;
    while (!Is_Prime(hashes))
        hashes += 2;
    const std::size_t originals = kHeader, translations = originals + count * std::size_t{8};
    const std::size_t table = translations + count * std::size_t{8};
    std::string bytes(table + hashes * std::size_t{4}, '\0');
    const std::uint32_t header[] = {0x950412DE,
                                    0,
                                    count,
                                    static_cast<std::uint32_t>(originals),
                                    static_cast<std::uint32_t>(translations),
                                    hashes,
                                    static_cast<std::uint32_t>(table)};
    for (std::size_t i = 0; i < std::size(header); ++i)
        Put(bytes, 4 * i, header[i]);
    std::vector<bool> taken(hashes);
    std::uint32_t number = 0;
    for (const auto& [original, translation] : messages) {
        for (const auto& [where, text] :
             {std::pair(originals, &original), {translations, &translation}}) {
            Put(bytes, where + 8 * std::size_t{number}, static_cast<std::uint32_t>(text->size()));
            Put(bytes, where + 8 * std::size_t{number} + 4,
                static_cast<std::uint32_t>(bytes.size()));
            bytes.append(text->c_str(), text->size() + 1);
        }
        const std::uint32_t hash = Hash(original);
        std::uint32_t at = hash % hashes;
        while (taken[at])
            at = (at + 1 + hash % (hashes - 2)) % hashes;
        taken[at] = true;
        Put(bytes, table + 4 * std::size_t{at}, ++number);
    }
    return bytes;
}

// ---- the files ----------------------------------------------------------------------------------

// The same translations in both forms, in a directory that goes at the end.
class Files {
public:
    Files() {
        const std::string folder = (m_Root / "de" / "LC_MESSAGES").string();
        std::filesystem::create_directories(folder);
        std::ofstream strings(Strings_Path());
        std::map<std::string, std::string> messages = {
            {"", "Content-Type: text/plain; charset=UTF-8\n"}};
        for (ULONG id = 0; id < kStrings; ++id) {
            strings << "app/" << id << " = " << Translation(id) << '\n';
            messages.emplace(Original(id), Translation(id));
        }
        std::ofstream(folder + "/bench.mo", std::ios::binary) << Catalogue(messages);
    }
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;
    ~Files() {
        std::error_code ignored;
        std::filesystem::remove_all(m_Root, ignored);
    }

    std::string Root() const { return m_Root.string(); }
    std::string Strings_Path() const { return (m_Root / "abcd_0407.txt").string(); }

private:
    std::filesystem::path m_Root =
        std::filesystem::temp_directory_path() / ("rv_bench_resources_" + std::to_string(getpid()));
};

const Files& The_Files() {
    static const Files files;
    return files;
}

// ---- what is measured ---------------------------------------------------------------------------

void Translated(benchmark::State& state) {
    RVResourceLoader loader(The_Files().Root().c_str(), "abcd", kLanguage, kModule, nullptr);
    const std::vector<ULONG> ids = Shuffled(kStrings);
    for (auto _ : state) {
        for (const ULONG id : ids) {
            RVString text;
            if (!loader.Load_String(text, id)) state.SkipWithError("a string is not there");
            benchmark::DoNotOptimize(text.GetString());
        }
    }
    state.SetItemsProcessed(state.iterations() * kStrings);
}

void Translated_By_Gettext(benchmark::State& state) {
    setenv("LANGUAGE", "de", 1);
    setlocale(LC_ALL, "C.UTF-8");
    bindtextdomain("bench", The_Files().Root().c_str());
    bind_textdomain_codeset("bench", "UTF-8");
    std::vector<std::string> originals;
    for (const ULONG id : Shuffled(kStrings))
        originals.push_back(Original(id));
    if (dgettext("bench", "Original text number 7") != Translation(7))
        state.SkipWithError("gettext does not find its catalogue");
    for (auto _ : state)
        for (const std::string& original : originals)
            benchmark::DoNotOptimize(dgettext("bench", original.c_str()));
    state.SetItemsProcessed(state.iterations() * kStrings);
}

void Open_File(benchmark::State& state) {
    const RVString root(The_Files().Root().c_str());
    for (auto _ : state) {
        RVLanguageManager manager(root, "abcd");
        if (!manager.Open_Language(kLanguage, true, true)) state.SkipWithError("it does not open");
    }
    state.SetItemsProcessed(state.iterations() * kStrings);
}

void Read_Lines(benchmark::State& state) {
    const std::string path = The_Files().Strings_Path();
    for (auto _ : state) {
        std::ifstream file(path);
        std::string line;
        ULONG lines = 0;
        while (std::getline(file, line))
            ++lines;
        if (lines != kStrings) state.SkipWithError("wrong result");
    }
    state.SetItemsProcessed(state.iterations() * kStrings);
}

void Read_Lines_In_C(benchmark::State& state) {
    const std::string path = The_Files().Strings_Path();
    for (auto _ : state) {
        std::FILE* const file = std::fopen(path.c_str(), "r");
        char* line = nullptr;
        std::size_t room = 0;
        ULONG lines = 0;
        while (file && getline(&line, &room, file) > 0)
            ++lines;
        std::free(line);
        if (file) std::fclose(file);
        if (lines != kStrings) state.SkipWithError("wrong result");
    }
    state.SetItemsProcessed(state.iterations() * kStrings);
}

// What resources_benchmark.rc has.
constexpr ULONG kOwnStrings = 1000;

std::vector<ULONG> Own_Ids() {
    std::vector<ULONG> ids = Shuffled(kOwnStrings);
    for (ULONG& id : ids)
        id += 57'344;
    return ids;
}

void Own_String(benchmark::State& state) {
    RVResourceLoader loader(nullptr, kModule, GetModuleHandleA(nullptr));
    const std::vector<ULONG> ids = Own_Ids();
    for (auto _ : state) {
        for (const ULONG id : ids) {
            RVString text;
            if (!loader.Load_String(text, id)) state.SkipWithError("a string is not there");
            benchmark::DoNotOptimize(text.GetString());
        }
    }
    state.SetItemsProcessed(state.iterations() * kOwnStrings);
}

void Own_String_Of_Table(benchmark::State& state) {
    std::vector<std::pair<ULONG, std::string>> table;
    for (ULONG id : Own_Ids())
        table.emplace_back(id, "The application's text number " + std::to_string(id));
    std::sort(table.begin(), table.end());
    const std::vector<ULONG> ids = Own_Ids();
    for (auto _ : state) {
        for (const ULONG id : ids) {
            const auto found = std::lower_bound(
                table.begin(), table.end(), id,
                [](const auto& entry, ULONG sought) { return entry.first < sought; });
            const std::string text = found->second;
            benchmark::DoNotOptimize(text.data());
        }
    }
    state.SetItemsProcessed(state.iterations() * kOwnStrings);
}

// Numbers without gaps need no search.
void Own_String_Of_Array(benchmark::State& state) {
    std::vector<std::string> table;
    for (ULONG i = 0; i < kOwnStrings; ++i)
        table.push_back("The application's text number " + std::to_string(57'344 + i));
    const std::vector<ULONG> ids = Own_Ids();
    for (auto _ : state) {
        for (const ULONG id : ids) {
            const std::string text = table[id - 57'344];
            benchmark::DoNotOptimize(text.data());
        }
    }
    state.SetItemsProcessed(state.iterations() * kOwnStrings);
}

const bool g_Registered = [] {
    const auto add = [](const char* name, auto run) {
        benchmark::RegisterBenchmark(name, run)->Unit(benchmark::kMicrosecond);
    };
    add("translated string, one of 100,000/ours", Translated);
    add("translated string, one of 100,000/gettext by text", Translated_By_Gettext);
    add("open 100,000 translated strings/ours", Open_File);
    add("open 100,000 translated strings/reading the lines", Read_Lines);
    add("open 100,000 translated strings/reading the lines in C", Read_Lines_In_C);
    add("the module's own string/ours", Own_String);
    add("the module's own string/search and copy", Own_String_Of_Table);
    add("the module's own string/index and copy", Own_String_Of_Array);
    return Set_Bar({"translated string, one of 100,000", At_Most_Times(2), 0, {}}) &&
           Set_Bar({"open 100,000 translated strings", At_Most_Times(2), 0, {}}) &&
           Set_Bar({"the module's own string", At_Most_Times(3), 0, {}});
}();

}  // namespace
