// The XML reader beside others, in memory and from files: speed, memory, and growth.

#include <RVUtils/XmlParser.h>
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "ratio_main.h"
#include "xml_documents.h"
#include "xml_peers.h"

namespace {

namespace fs = std::filesystem;
using rv_bench::Add_Figure;
using rv_bench::At_Most_Times;
using rv_bench::Counts;
using rv_bench::Document;
using rv_bench::Set_Bar;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kMB = 1 << 20;
constexpr std::size_t kInMemory = 64 * kMB;
constexpr std::size_t kInFile = 512 * kMB;

double Seconds(const std::function<void()>& work) {
    const auto start = Clock::now();
    work();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

std::size_t Length_Of(const Document& document) {
    return static_cast<std::size_t>(document.text.GetLength());
}

// --- ours ----------------------------------------------------------------------------------------

Counts Walk(RVXmlParser& parser) {
    Counts counts;
    RVString name;
    RVString value;
    ULONG children = 0;
    while (parser.Next(name, value, children)) {
        ++counts.elements;
        counts.name_bytes += static_cast<std::uint64_t>(name.GetLength());
        counts.value_bytes += static_cast<std::uint64_t>(value.GetLength());
    }
    return counts;
}

void Load_Text(RVXmlParser& parser, const Document& document) {
    if (!parser.Load_Text(document.text)) throw std::runtime_error("Load_Text refuses");
}

// --- works in memory -----------------------------------------------------------------------------

// The document last asked for; making one takes longer than reading it.
const Document& Held(const std::string& key, const std::function<Document()>& make) {
    static std::string held_key;
    static std::unique_ptr<Document> held;
    if (key != held_key) {
        held.reset();
        held = std::make_unique<Document>(make());
        held_key = key;
    }
    return *held;
}

const Document& Indented() {
    return Held("indented", [] { return rv_bench::Make_Small_Elements(kInMemory, true); });
}

const Document& Dense() {
    return Held("dense", [] { return rv_bench::Make_Small_Elements(kInMemory, false); });
}

const Document& Sections() {
    return Held("sections", [] { return rv_bench::Make_Sections(16, 4 * kMB); });
}

using Get_Document = const Document& (*)();

void Finish(benchmark::State& state, const Document& document) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(Length_Of(document)));
}

void Ours_Walking(benchmark::State& state, Get_Document get) {
    const Document& document = get();
    for (auto _ : state) {
        const auto parser = std::make_unique<RVXmlParser>();
        Counts counts;
        state.SetIterationTime(Seconds([&] {
            Load_Text(*parser, document);
            counts = Walk(*parser);
        }));
        if (counts != document.counts) state.SkipWithError("the walk has lost something");
    }
    Finish(state, document);
}

void Ours_Loading(benchmark::State& state, Get_Document get) {
    const Document& document = get();
    for (auto _ : state) {
        const auto parser = std::make_unique<RVXmlParser>();
        state.SetIterationTime(Seconds([&] { Load_Text(*parser, document); }));
    }
    Finish(state, document);
}

// `work` times itself, so that taking a document down is nobody's cost.
void Peer(benchmark::State& state, Get_Document get, rv_bench::Work work) {
    const Document& document = get();
    for (auto _ : state) {
        const rv_bench::Worked worked = work(document.text);
        state.SetIterationTime(worked.seconds);
        if (worked.counts && *worked.counts != document.counts)
            state.SkipWithError("the walk has lost something");
        malloc_trim(0);
    }
    Finish(state, document);
}

void Register_Peer(const std::string& name, Get_Document get, rv_bench::Work work) {
    if (work)
        benchmark::RegisterBenchmark(name.c_str(), Peer, get, work)->UseManualTime()->Iterations(3);
}

void Register_Walk(const std::string& name, Get_Document get) {
    benchmark::RegisterBenchmark((name + "/ours").c_str(), Ours_Walking, get)
        ->UseManualTime()
        ->Iterations(3);
    Register_Peer(name + "/pugixml", get, rv_bench::kPugixml_Walk);
    Register_Peer(name + "/RapidXML", get, rv_bench::kRapidxml_Walk);
    Register_Peer(name + "/libxml2 SAX", get, rv_bench::kLibxml2_Walk);
}

const bool kInMemoryWorks = [] {
    const std::string indented = "Load_Text and walk, 64 MB of small elements, indented";
    const std::string dense = "Load_Text and walk, 64 MB of small elements, dense";
    const std::string sections = "Load_Text and walk, 16 sections of 4 MB";
    const std::string loading = "Load_Text alone, 64 MB of small elements, indented";
    Register_Walk(indented, Indented);
    Set_Bar({indented, 1.5, 2, {}});
    Register_Walk(dense, Dense);
    Set_Bar({dense, 1.5, 2, {}});
    Register_Walk(sections, Sections);
    Set_Bar({sections, 1.3, 2, {"RapidXML"}});
    benchmark::RegisterBenchmark((loading + "/ours").c_str(), Ours_Loading, Indented)
        ->UseManualTime()
        ->Iterations(3);
    Register_Peer(loading + "/pugixml", Indented, rv_bench::kPugixml_Load);
    return Set_Bar({loading, 1.3, 0, {}});
}();

// --- works on files ------------------------------------------------------------------------------

// A directory of one measurement, to which the library's temporary files go, too.
class Scratch {
public:
    explicit Scratch(const fs::path& parent = Base()) {
        std::string pattern = (parent / "bench-xml-XXXXXX").string();
        if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary directory");
        m_Path = pattern;
        Clear_Temporary();
        setenv("TMPDIR", (m_Path / "temp").c_str(), 1);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    ~Scratch() {
        setenv("TMPDIR", Base().c_str(), 1);
        std::error_code error;
        fs::remove_all(m_Path, error);
    }

    std::string operator/(const char* name) const { return (m_Path / name).string(); }
    void Clear_Temporary() const {
        fs::remove_all(m_Path / "temp");
        fs::create_directory(m_Path / "temp");
    }
    // Where measurements put their files.
    static const fs::path& Base() {
        static const fs::path base = fs::temp_directory_path();
        return base;
    }

private:
    fs::path m_Path;
};

// A document on disk under a name that lasts, and under one that a load uses up.
class DocumentFile {
public:
    explicit DocumentFile(const Document& document, const fs::path& parent = Scratch::Base())
        : m_Scratch(parent),
          m_Path(m_Scratch / "document.xml"),
          m_Link(m_Scratch / "link.xml"),
          m_Length(Length_Of(document)),
          m_Counts(document.counts) {
        std::ofstream(m_Path, std::ios::binary)
            .write(document.text.GetString(), document.text.GetLength());
        sync();
    }

    // Readies a file for a load, with nothing of the load before left.
    RVString Renew() const {
        m_Scratch.Clear_Temporary();
        std::error_code error;
        fs::remove(m_Link, error);
        fs::create_hard_link(m_Path, m_Link);
        return RVString("FILE://") + m_Link.c_str();
    }
    const std::string& Path() const { return m_Path; }
    std::string Path_Of_Copy() const { return m_Scratch / "copy.xml"; }
    std::size_t Length() const { return m_Length; }
    const Counts& Expected() const { return m_Counts; }

private:
    Scratch m_Scratch;
    std::string m_Path;
    std::string m_Link;
    std::size_t m_Length;
    Counts m_Counts;
};

void Load_File(RVXmlParser& parser, const RVString& reference) {
    if (!parser.Load_File(reference)) throw std::runtime_error("Load_File refuses");
}

std::unique_ptr<DocumentFile>& Held_File() {
    static std::unique_ptr<DocumentFile> file;
    return file;
}

const DocumentFile& File_Of(const std::string& key, const std::function<Document()>& make) {
    static std::string held_key;
    if (key != held_key) {
        Held_File().reset();
        Held_File() = std::make_unique<DocumentFile>(make());
        malloc_trim(0);
        held_key = key;
    }
    return *Held_File();
}

Document Make_Large_Elements() {
    return rv_bench::Make_Small_Elements(kInFile, true);
}

Document Make_Large_Sections() {
    return rv_bench::Make_Sections(16, kInFile / 16);
}

const DocumentFile& Elements_File() {
    return File_Of("elements", Make_Large_Elements);
}

const DocumentFile& Sections_File() {
    return File_Of("sections", Make_Large_Sections);
}

void Finish(benchmark::State& state, const DocumentFile& file) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.Length()));
}

void Ours_Walking_File(benchmark::State& state) {
    const DocumentFile& file = Elements_File();
    for (auto _ : state) {
        const auto parser = std::make_unique<RVXmlParser>();
        const RVString reference = file.Renew();
        Counts counts;
        state.SetIterationTime(Seconds([&] {
            Load_File(*parser, reference);
            counts = Walk(*parser);
        }));
        if (counts != file.Expected()) state.SkipWithError("the walk has lost something");
    }
    Finish(state, file);
}

void Peer_Walking_File(benchmark::State& state, rv_bench::FileWork work) {
    const DocumentFile& file = Elements_File();
    for (auto _ : state) {
        const rv_bench::Worked worked = work(file.Path());
        state.SetIterationTime(worked.seconds);
        if (*worked.counts != file.Expected()) state.SkipWithError("the walk has lost something");
    }
    Finish(state, file);
}

void Ours_Splitting_File(benchmark::State& state) {
    const DocumentFile& file = Sections_File();
    for (auto _ : state) {
        RVXmlParser parser;
        const RVString reference = file.Renew();
        // What earlier turns have written must not be this one's cost.
        sync();
        state.SetIterationTime(Seconds([&] { Load_File(parser, reference); }));
    }
    Finish(state, file);
    file.Renew();
}

void Run_Cp(const std::string& from, const std::string& to) {
    char program[] = "cp";
    std::string source = from;
    std::string target = to;
    char* arguments[] = {program, source.data(), target.data(), nullptr};
    pid_t child = 0;
    int status = 1;
    if (posix_spawnp(&child, program, nullptr, nullptr, arguments, environ) != 0 ||
        waitpid(child, &status, 0) != child || status != 0)
        throw std::runtime_error("cp fails");
}

void Cp_File(benchmark::State& state) {
    const DocumentFile& file = Sections_File();
    const std::string copy = file.Path_Of_Copy();
    for (auto _ : state) {
        file.Renew();
        sync();
        state.SetIterationTime(Seconds([&] { Run_Cp(file.Path(), copy); }));
        fs::remove(copy);
    }
    Finish(state, file);
}

const bool kFileWorks = [] {
    const std::string walking = "Load_File and walk, 512 MB of small elements";
    const std::string splitting = "Load_File, 512 MB that are mostly sections";
    benchmark::RegisterBenchmark((walking + "/ours").c_str(), Ours_Walking_File)
        ->UseManualTime()
        ->Iterations(1);
    if (rv_bench::kExpat_Walk_File)
        benchmark::RegisterBenchmark((walking + "/expat").c_str(), Peer_Walking_File,
                                     rv_bench::kExpat_Walk_File)
            ->UseManualTime()
            ->Iterations(1);
    if (rv_bench::kLibxml2_Walk_File)
        benchmark::RegisterBenchmark((walking + "/libxml2 push").c_str(), Peer_Walking_File,
                                     rv_bench::kLibxml2_Walk_File)
            ->UseManualTime()
            ->Iterations(1);
    Set_Bar({walking, 2, 0, {"expat"}});
    Set_Bar({walking, 1, 1.5, {"libxml2 push"}});
    benchmark::RegisterBenchmark((splitting + "/ours").c_str(), Ours_Splitting_File)
        ->UseManualTime()
        ->Iterations(3);
    benchmark::RegisterBenchmark((splitting + "/cp").c_str(), Cp_File)
        ->UseManualTime()
        ->Iterations(3);
    return Set_Bar({splitting, At_Most_Times(1.5), 0, {}});
}();

// --- memory --------------------------------------------------------------------------------------

// A number of bytes of /proc/self/status.
double Status(const char* field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(field))
            return std::strtod(line.c_str() + std::strlen(field), nullptr) * 1024;
    throw std::runtime_error("no such field");
}

double Peak() {
    return Status("VmHWM:");
}

double Present() {
    return Status("VmRSS:");
}

// From here on Peak tells the highest use since.
void Forget_Peak() {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";
}

// How far above the present use `work` went at its peak.
double Peak_Above(const std::function<void()>& work) {
    Forget_Peak();
    const double before = Present();
    work();
    return Peak() - before;
}

double Load_Text_Memory(bool indented) {
    const Document document = rv_bench::Make_Small_Elements(kInMemory, indented);
    RVXmlParser parser;
    return Peak_Above([&] { Load_Text(parser, document); }) /
           static_cast<double>(Length_Of(document));
}

double Pugixml_Memory() {
    const Document document = rv_bench::Make_Small_Elements(kInMemory, true);
    return Peak_Above([&] { rv_bench::kPugixml_Load(document.text); }) /
           static_cast<double>(Length_Of(document));
}

// What a load takes at its peak beyond what it holds at its end, in MiB.
double Load_File_Memory(Document (*make)()) {
    std::optional<Document> document = make();
    const DocumentFile file(*document);
    document.reset();
    std::optional<RVXmlParser> parser(std::in_place);
    const RVString reference = file.Renew();
    const double peak = Peak_Above([&] { Load_File(*parser, reference); });
    Forget_Peak();
    const double with_items = Present();
    parser.reset();
    malloc_trim(0);
    const double held = with_items - Present();
    return (peak - held) / static_cast<double>(kMB);
}

const bool kMemoryFigures = [] {
    Add_Figure({"peak memory of Load_Text, small elements, indented", "times the document", 1.6,
                [] { return Load_Text_Memory(true); }});
    Add_Figure({"peak memory of Load_Text, small elements, dense", "times the document", 1.6,
                [] { return Load_Text_Memory(false); }});
    if (rv_bench::kPugixml_Load)
        Add_Figure({"peak memory of pugixml, small elements, indented", "times the document", 0,
                    Pugixml_Memory});
    Add_Figure({"memory of Load_File beside the items, 512 MB of small elements", "MiB", 4,
                [] { return Load_File_Memory(Make_Large_Elements); }});
    return Add_Figure({"memory of Load_File beside the items, 512 MB that are mostly sections",
                       "MiB", 4, [] { return Load_File_Memory(Make_Large_Sections); }});
}();

// --- growth --------------------------------------------------------------------------------------

// The processor's time, so that what else runs on the machine does not pass for growth.
double Processor_Seconds(const std::function<void()>& work) {
    const std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// Loads of one document, one by one, and the shortest of them: noise only ever adds.
class Loads {
public:
    virtual ~Loads() = default;
    double Again() {
        const double seconds = Load();
        const bool shorter = m_Shortest == 0 || seconds < 0.99 * m_Shortest;
        m_Unchanged = shorter ? 0 : m_Unchanged + 1;
        m_Shortest = m_Shortest == 0 ? seconds : std::min(m_Shortest, seconds);
        return seconds;
    }
    double Shortest() const { return m_Shortest; }
    // Whether the last loads found nothing shorter.
    bool Is_Settled() const { return m_Unchanged >= 5; }

private:
    virtual double Load() = 0;

    double m_Shortest = 0;
    int m_Unchanged = 0;
};

class TextLoads : public Loads {
public:
    explicit TextLoads(Document document) : m_Document(std::move(document)) {}

private:
    double Load() override {
        RVXmlParser parser;
        malloc_trim(0);
        return Processor_Seconds([&] { Load_Text(parser, m_Document); });
    }

    Document m_Document;
};

// Memory that acts as a disk, where there is enough of it: a disk's journal has a growth of its
// own.
fs::path Steady_Disk() {
    const fs::path memory = "/dev/shm";
    std::error_code error;
    const fs::space_info space = fs::space(memory, error);
    return !error && space.available > 4096 * kMB ? memory : Scratch::Base();
}

class FileLoads : public Loads {
public:
    explicit FileLoads(const Document& document) : m_File(document, Steady_Disk()) {}

private:
    double Load() override {
        RVXmlParser parser;
        const RVString reference = m_File.Renew();
        malloc_trim(0);
        return Processor_Seconds([&] { Load_File(parser, reference); });
    }

    DocumentFile m_File;
};

using Make_Size = Document (*)(std::size_t size);

// The factor between the times of two loads that are taken in turn.
double Factor(Loads& once, Loads& twice) {
    constexpr double kEnough = 60;  // seconds
    double spent = 0;
    for (int round = 0; round < 500 && spent < kEnough; ++round) {
        if (spent > 2 && once.Is_Settled() && twice.Is_Settled()) break;
        spent += once.Again() + twice.Again();
    }
    return twice.Shortest() / once.Shortest();
}

// The largest factor between one size and the next, which is twice as large.
template <class LoadsOf>
double Worst_Growth(std::size_t first, std::size_t last, Make_Size make) {
    double worst = 0;
    auto once = std::make_unique<LoadsOf>(make(first));
    for (std::size_t size = 2 * first; size <= last; size *= 2) {
        auto twice = std::make_unique<LoadsOf>(make(size));
        worst = std::max(worst, Factor(*once, *twice));
        once = std::move(twice);
    }
    return worst;
}

void Add_Growth(const std::string& what, std::size_t first, std::size_t last, Make_Size make) {
    constexpr double kMost = 2.2;
    Add_Figure({"growth of Load_Text, " + what, "times the time for twice the document", kMost,
                [=] { return Worst_Growth<TextLoads>(first, last, make); }});
    Add_Figure({"growth of Load_File, " + what, "times the time for twice the document", kMost,
                [=] { return Worst_Growth<FileLoads>(first, last, make); }});
}

const bool kGrowthFigures = [] {
    Add_Growth("small elements, 1 MB to 1 GB", kMB, 1024 * kMB,
               [](std::size_t size) { return rv_bench::Make_Small_Elements(size, true); });
    Add_Growth("up to 100,000 sections of 1 KB", 12'500, 100'000,
               [](std::size_t size) { return rv_bench::Make_Sections(size, 1024); });
    Add_Growth("sections nested up to 60,000 deep", 7500, 60'000, rv_bench::Make_Nested_Sections);
    Add_Growth("elements nested up to 60,000 deep", 7500, 60'000, rv_bench::Make_Nested_Elements);
    return true;
}();

}  // namespace
