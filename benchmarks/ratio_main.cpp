// Runs every work of a benchmark program with its contenders in turn and prints their ratios.

#include "ratio_main.h"

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <optional>
#include <regex>
#include <sstream>

namespace {

using rv_bench::Bar;
using rv_bench::Figure;

constexpr int kTurns = 3;

// One contender of one work, with the speed of each turn in bytes or items per second.
struct Contender {
    std::string name;
    std::string full_name;  // as Google Benchmark filters by it
    std::vector<double> speeds = {};
    bool counts_items = false;
    std::string error = {};
};

struct Work {
    std::string name;
    std::vector<Contender> contenders;
};

struct Tally {
    int held = 0;
    int missed = 0;
    int not_measured = 0;
};

std::vector<Bar>& Bars() {
    static std::vector<Bar> bars;
    return bars;
}

std::vector<Figure>& Figures() {
    static std::vector<Figure> figures;
    return figures;
}

// Takes the names that Google Benchmark lists.
class NameList : public benchmark::BenchmarkReporter {
public:
    NameList() {
        SetOutputStream(&m_Out);
        // A filter that is about figures alone finds no benchmark, which is no failure.
        SetErrorStream(&m_Ignored);
    }
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>&) override {}
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        std::istringstream lines(m_Out.str());
        for (std::string line; std::getline(lines, line);)
            names.push_back(line);
        return names;
    }

private:
    std::ostringstream m_Out;
    std::ostringstream m_Ignored;
};

// Takes the speed of one contender's run.
class Turn : public benchmark::BenchmarkReporter {
public:
    explicit Turn(Contender& contender) : m_Contender(contender) {}
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration) continue;
            if (run.error_occurred) {
                m_Contender.error = run.error_message;
                continue;
            }
            const auto bytes = run.counters.find("bytes_per_second");
            const auto items = run.counters.find("items_per_second");
            m_Contender.counts_items = bytes == run.counters.end();
            const auto speed = m_Contender.counts_items ? items : bytes;
            if (speed != run.counters.end()) m_Contender.speeds.push_back(speed->second);
        }
    }

private:
    Contender& m_Contender;
};

void Set_Flag(const char* flag) {
    char program[] = "bench";
    std::vector<char> text(flag, flag + std::strlen(flag) + 1);
    char* arguments[] = {program, text.data(), nullptr};
    int count = 2;
    benchmark::Initialize(&count, arguments);
}

std::string Exactly(const std::string& name) {
    static const std::regex special(R"([.^$|()\[\]{}*+?\\])");
    return std::string("^").append(std::regex_replace(name, special, R"(\$&)")).append("$");
}

// The works of the program that the user's filter lets through, in the order of registration.
std::vector<Work> Find_Works() {
    const std::string filter = benchmark::GetBenchmarkFilter();
    NameList list;
    Set_Flag("--benchmark_list_tests=true");
    benchmark::RunSpecifiedBenchmarks(&list, filter.empty() ? "." : filter);
    Set_Flag("--benchmark_list_tests=false");

    std::vector<Work> works;
    for (const std::string& full_name : list.Names()) {
        const std::size_t slash = full_name.find('/');
        if (slash == std::string::npos) continue;
        const std::string work = full_name.substr(0, slash);
        const std::string name =
            full_name.substr(slash + 1, full_name.find('/', slash + 1) - slash - 1);
        auto found = std::find_if(works.begin(), works.end(),
                                  [&](const Work& known) { return known.name == work; });
        if (found == works.end()) found = works.insert(works.end(), Work{work, {}});
        found->contenders.push_back({name, full_name});
    }
    return works;
}

void Take_Turns(Work& work) {
    for (int turn = 0; turn < kTurns; ++turn) {
        for (Contender& contender : work.contenders) {
            // What an earlier contender gave back must not save this one its page faults.
            malloc_trim(0);
            Turn reporter(contender);
            benchmark::RunSpecifiedBenchmarks(&reporter, Exactly(contender.full_name));
        }
    }
}

double Median(std::vector<double> numbers) {
    if (numbers.empty()) return 0;
    std::sort(numbers.begin(), numbers.end());
    return numbers[numbers.size() / 2];
}

double Speed(const Contender& contender) {
    return contender.error.empty() ? Median(contender.speeds) : 0;
}

// Megabytes a second, or the nanoseconds that an item takes.
std::string Speed_Text(const Contender& contender) {
    const double speed = Speed(contender);
    char text[32];
    if (contender.counts_items)
        std::snprintf(text, sizeof text, "%9.1f ns  ", speed > 0 ? 1e9 / speed : 0);
    else
        std::snprintf(text, sizeof text, "%9.1f MB/s", speed / 1e6);
    return text;
}

bool Concerns(const Bar& bar, const Contender& peer) {
    return bar.peers.empty() ||
           std::find(bar.peers.begin(), bar.peers.end(), peer.name) != bar.peers.end();
}

// The peer that the bar is measured against: the fastest of those it is about.
const Contender* Rival(const Work& work, const Bar& bar) {
    const Contender* rival = nullptr;
    for (const Contender& peer : work.contenders) {
        if (peer.name == "ours" || !Concerns(bar, peer) || Speed(peer) <= 0) continue;
        if (!rival || Speed(peer) > Speed(*rival)) rival = &peer;
    }
    return rival;
}

std::string Verdict(const Bar& bar, double ratio, Tally& tally) {
    char text[80];
    const bool held = ratio >= bar.least;
    ++(held ? tally.held : tally.missed);
    if (bar.aim > 0)
        std::snprintf(text, sizeof text, "%5.2f  %s (aim %.2f%s)", bar.least,
                      held ? "ok" : "MISSED", bar.aim, ratio >= bar.aim ? ", reached" : "");
    else
        std::snprintf(text, sizeof text, "%5.2f  %s", bar.least, held ? "ok" : "MISSED");
    return text;
}

// A bar with the peer that it is measured against, null if there is none.
struct Duel {
    const Bar* bar;
    const Contender* rival;
};

std::vector<Duel> Duels_Of(const Work& work) {
    std::vector<Duel> duels;
    for (const Bar& bar : Bars())
        if (bar.work == work.name) duels.push_back({&bar, Rival(work, bar)});
    return duels;
}

void Print_Peer(const Contender& peer, double ours, const std::vector<Duel>& duels, Tally& tally) {
    if (!peer.error.empty()) {
        std::printf("    %-28s failed: %s\n", peer.name.c_str(), peer.error.c_str());
        return;
    }
    const double ratio = Speed(peer) > 0 ? ours / Speed(peer) : 0;
    std::printf("    %-28s %s  %6.2f", peer.name.c_str(), Speed_Text(peer).c_str(), ratio);
    for (const Duel& duel : duels)
        if (duel.rival == &peer) std::printf("  %s", Verdict(*duel.bar, ratio, tally).c_str());
    std::printf("\n");
}

void Print_Work(const Work& work, Tally& tally) {
    const auto ours = std::find_if(work.contenders.begin(), work.contenders.end(),
                                   [](const Contender& one) { return one.name == "ours"; });
    const Contender* const own = ours == work.contenders.end() ? nullptr : &*ours;
    const double speed = own ? Speed(*own) : 0;
    const std::vector<Duel> duels = Duels_Of(work);

    std::printf("%s\n    %-28s %s\n", work.name.c_str(), "ours",
                own ? Speed_Text(*own).c_str() : "missing");
    if (own && !own->error.empty()) std::printf("    ours failed: %s\n", own->error.c_str());
    for (const Contender& peer : work.contenders)
        if (&peer != own) Print_Peer(peer, speed, duels, tally);
    for (const Duel& duel : duels) {
        if (duel.rival) continue;
        std::printf("    bar %.2f not measured: no such peer is installed\n", duel.bar->least);
        ++tally.not_measured;
    }
    std::fflush(stdout);
}

// What `measure` gives in a child process with a heap of its own; nothing if the child fails.
std::optional<double> In_Child(const std::function<double()>& measure) {
    int ends[2];
    if (pipe(ends) != 0) return std::nullopt;
    const pid_t child = fork();
    if (child == 0) {
        const double number = measure();
        const bool told = write(ends[1], &number, sizeof number) == sizeof number;
        _exit(told ? 0 : 1);
    }
    close(ends[1]);
    double number = -1;
    const bool heard = child > 0 && read(ends[0], &number, sizeof number) == sizeof number;
    close(ends[0]);
    int status = 1;
    if (child > 0) waitpid(child, &status, 0);
    if (!heard || status != 0 || number < 0) return std::nullopt;
    return number;
}

void Print_Figure(const Figure& figure, Tally& tally) {
    const std::optional<double> number = In_Child(figure.measure);
    std::printf("%s\n", figure.name.c_str());
    if (!number) {
        std::printf("    failed  MISSED\n");
        ++tally.missed;
    } else if (figure.most <= 0) {
        std::printf("    %.2f %s (for comparison)\n", *number, figure.unit.c_str());
    } else {
        const bool held = *number <= figure.most;
        ++(held ? tally.held : tally.missed);
        std::printf("    %.2f %s, at most %.2f  %s\n", *number, figure.unit.c_str(), figure.most,
                    held ? "ok" : "MISSED");
    }
    std::fflush(stdout);
}

void Print_Figures(Tally& tally) {
    const std::string filter = benchmark::GetBenchmarkFilter();
    const std::regex wanted(filter.empty() || filter == "all" ? "." : filter);
    for (const Figure& figure : Figures())
        if (std::regex_search(figure.name, wanted)) Print_Figure(figure, tally);
}

}  // namespace

namespace rv_bench {

bool Set_Bar(Bar bar) {
    Bars().push_back(std::move(bar));
    return true;
}

bool Add_Figure(Figure figure) {
    Figures().push_back(std::move(figure));
    return true;
}

}  // namespace rv_bench

int main(int count, char** arguments) {
    // Fixed, or the first large block that is freed would change the rules for whoever runs next.
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    mallopt(M_TRIM_THRESHOLD, 128 * 1024);
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 2;

    Tally tally;
    Print_Figures(tally);
    std::vector<Work> works = Find_Works();
    if (!works.empty())
        std::printf("%-32s %14s  %6s  %5s\n", "work (medians of three turns)", "speed", "ratio",
                    "bar");
    for (Work& work : works) {
        Take_Turns(work);
        Print_Work(work, tally);
    }
    std::printf("%d bars held, %d missed, %d not measured\n", tally.held, tally.missed,
                tally.not_measured);
    return tally.missed == 0 ? 0 : 1;
}
