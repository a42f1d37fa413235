// Date-time values beside the C library, the standard calendar and Abseil.

#include <RVUtils/Allocation.h>
#include <RVUtils/rvdatetm.h>
#include <benchmark/benchmark.h>
#include <locale.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "ratio_main.h"

#if defined(BENCH_WITH_ABSEIL)
#include <absl/time/civil_time.h>
#endif

namespace {

using rv_bench::Add_Figure;
using rv_bench::At_Most_Times;
using rv_bench::Set_Bar;

constexpr std::size_t kMoments = 256;  // as many as stay in the first cache

// Moments from 1970 to 2037, the same for all contenders.
const std::array<std::time_t, kMoments>& Instants() {
    static const auto instants = [] {
        std::mt19937_64 random(1);
        std::array<std::time_t, kMoments> numbers;
        for (std::time_t& number : numbers)
            number = static_cast<std::time_t>(random() % 2'145'916'800);
        return numbers;
    }();
    return instants;
}

std::tm Utc(std::time_t instant) {
    std::tm time;
    gmtime_r(&instant, &time);
    return time;
}

std::string Digits(std::time_t instant) {
    const std::tm time = Utc(instant);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d%H%M%S", &time);
    return text;
}

std::vector<RVDateTime> Objects() {
    std::vector<RVDateTime> objects;
    for (const std::time_t instant : Instants()) {
        RVString text(Digits(instant).c_str());
        objects.emplace_back(text);
    }
    return objects;
}

// Runs `step(i)` for one moment after the other; a step that goes wrong gives what it was.
template <class Step>
void Run_Steps(benchmark::State& state, Step step) {
    std::size_t at = 0;
    bool right = true;
    for (auto _ : state) {
        right &= step(at);
        at = (at + 1) % kMoments;
    }
    if (!right) state.SkipWithError("wrong result");
    state.SetItemsProcessed(state.iterations());
}

// --- database text -------------------------------------------------------------------------------

void Db_Text(benchmark::State& state) {
    std::vector<RVString> texts;
    for (const std::time_t instant : Instants())
        texts.emplace_back(Digits(instant).c_str());
    RVDateTime object;
    RVString text;
    Run_Steps(state, [&](std::size_t at) {
        const bool set = object.Set_Db_Value(texts[at]);
        object.Get_Db_Value(text);
        return set && text.GetLength() == 14;
    });
}

void Db_Text_By_C(benchmark::State& state) {
    std::vector<std::string> texts;
    for (const std::time_t instant : Instants())
        texts.push_back(Digits(instant));
    Run_Steps(state, [&](std::size_t at) {
        std::tm read = {};
        const char* const end = strptime(texts[at].c_str(), "%Y%m%d%H%M%S", &read);
        std::tm check = read;
        const bool good = end && timegm(&check) != -1 && check.tm_mday == read.tm_mday;
        char text[32];
        return std::strftime(text, sizeof text, "%Y%m%d%H%M%S", &check) == 14 && good;
    });
}

// --- arithmetic ----------------------------------------------------------------------------------

// Forth and back in turn, so that no moment wanders off.
int Sign(std::size_t at) {
    return at % 2 ? 1 : -1;
}

template <class Add>
void Add_To_Objects(benchmark::State& state, Add add) {
    std::vector<RVDateTime> objects = Objects();
    Run_Steps(state, [&](std::size_t at) {
        add(objects[at], Sign(at / 2));
        benchmark::DoNotOptimize(&objects[at]);
        return true;
    });
}

template <class Add>
void Add_To_Times(benchmark::State& state, Add add) {
    std::vector<std::time_t> instants(Instants().begin(), Instants().end());
    Run_Steps(state, [&](std::size_t at) {
        std::tm time;
        gmtime_r(&instants[at], &time);
        add(time, Sign(at / 2));
        instants[at] = timegm(&time);
        return instants[at] != -1;
    });
}

template <class Add>
void Add_To_Calendar(benchmark::State& state, Add add) {
    using namespace std::chrono;
    std::vector<sys_seconds> moments;
    for (const std::time_t instant : Instants())
        moments.emplace_back(seconds(instant));
    Run_Steps(state, [&](std::size_t at) {
        const sys_days day = floor<days>(moments[at]);
        moments[at] = sys_days(add(year_month_day(day), Sign(at / 2))) + (moments[at] - day);
        benchmark::DoNotOptimize(moments[at]);
        return true;
    });
}

// --- comparison ----------------------------------------------------------------------------------

template <class Compare>
void Compare_Objects(benchmark::State& state, Compare compare) {
    const std::vector<RVDateTime> objects = Objects();
    Run_Steps(state, [&](std::size_t at) {
        benchmark::DoNotOptimize(compare(objects[at], objects[(at + 1) % kMoments]));
        return true;
    });
}

#if defined(BENCH_WITH_ABSEIL)
void Compare_Abseil(benchmark::State& state) {
    std::vector<absl::CivilSecond> moments;
    for (const std::time_t instant : Instants()) {
        const std::tm time = Utc(instant);
        moments.emplace_back(time.tm_year + 1900, time.tm_mon + 1, time.tm_mday, time.tm_hour,
                             time.tm_min, time.tm_sec);
    }
    Run_Steps(state, [&](std::size_t at) {
        benchmark::DoNotOptimize(moments[at] < moments[(at + 1) % kMoments]);
        return true;
    });
}
#endif

// --- counts of seconds ---------------------------------------------------------------------------

void Counts(benchmark::State& state) {
    setenv("TZ", "America/New_York", 1);
    RVDateTime object;
    Run_Steps(state, [&](std::size_t at) {
        LONG count;
        const bool set = object.Set_Value(static_cast<LONG>(Instants()[at]), false);
        object.Get_Value(count, false);
        return set && count != 0;
    });
}

void Counts_By_C(benchmark::State& state) {
    setenv("TZ", "America/New_York", 1);
    tzset();
    Run_Steps(state, [&](std::size_t at) {
        std::tm time;
        localtime_r(&Instants()[at], &time);
        time.tm_isdst = -1;
        return std::mktime(&time) != -1;
    });
}

// --- display text --------------------------------------------------------------------------------

// Builds the locale on its first use, and makes it the user's.
std::string Use_Locale(const std::string& language) {
    namespace fs = std::filesystem;
    static const fs::path directory = fs::temp_directory_path() / "rvutils-bench-locales";
    const std::string name = language + ".UTF-8";
    if (!fs::exists(directory / name)) {
        fs::create_directories(directory);
        const std::string command = "localedef -c --no-archive -f UTF-8 -i " + language + " '" +
                                    (directory / name).string() + "' >/dev/null 2>&1";
        // Its warnings end it with a status of its own; a locale that is missing shows below.
        [[maybe_unused]] const int status = std::system(command.c_str());
    }
    setenv("LOCPATH", directory.c_str(), 1);
    setenv("LC_ALL", name.c_str(), 1);
    return name;
}

class CLocale {
public:
    explicit CLocale(const std::string& name)
        : m_Locale(newlocale(LC_ALL_MASK, name.c_str(), nullptr)) {}
    CLocale(const CLocale&) = delete;
    CLocale& operator=(const CLocale&) = delete;
    ~CLocale() {
        if (m_Locale) freelocale(m_Locale);
    }
    locale_t Get() const { return m_Locale; }

private:
    locale_t m_Locale;
};

void Show(benchmark::State& state, const std::string& language) {
    Use_Locale(language);
    std::vector<RVDateTime> objects = Objects();
    RVString text;
    Run_Steps(state, [&](std::size_t at) {
        objects[at].Get_Value(text);
        return text.GetLength() > 14;
    });
}

void Show_By_C(benchmark::State& state, const std::string& language) {
    const CLocale locale(Use_Locale(language));
    if (!locale.Get()) return state.SkipWithError("no such locale");
    std::vector<std::tm> moments;
    for (const std::time_t instant : Instants())
        moments.push_back(Utc(instant));
    Run_Steps(state, [&](std::size_t at) {
        char text[80];
        return strftime_l(text, sizeof text, "%x %X", &moments[at], locale.Get()) > 14;
    });
}

std::vector<std::string> Shown_By_C(locale_t locale) {
    std::vector<std::string> texts;
    for (const std::time_t instant : Instants()) {
        const std::tm time = Utc(instant);
        char text[80];
        texts.emplace_back(text, strftime_l(text, sizeof text, "%x %X", &time, locale));
    }
    return texts;
}

void Read(benchmark::State& state, const std::string& language) {
    const CLocale locale(Use_Locale(language));
    if (!locale.Get()) return state.SkipWithError("no such locale");
    std::vector<RVString> texts;
    for (const std::string& text : Shown_By_C(locale.Get()))
        texts.emplace_back(text.c_str());
    RVDateTime object;
    Run_Steps(state, [&](std::size_t at) { return object.Set_Value(texts[at]); });
}

void Read_By_C(benchmark::State& state, const std::string& language) {
    const CLocale locale(Use_Locale(language));
    if (!locale.Get()) return state.SkipWithError("no such locale");
    const std::vector<std::string> texts = Shown_By_C(locale.Get());
    Run_Steps(state, [&](std::size_t at) {
        std::tm time = {};
        return strptime_l(texts[at].c_str(), "%x %X", &time, locale.Get()) != nullptr;
    });
}

// --- memory --------------------------------------------------------------------------------------

int g_Allocations = 0;

double Count_Allocations() {
    const AFX_ALLOC_HOOK before = AfxSetAllocHook([](std::size_t, BOOL, LONG) -> BOOL {
        ++g_Allocations;
        return TRUE;
    });
    {
        RVDateTime object, copy(object);
        RVString text("20010203040506");
        COleDateTime record;
        LONG count;
        bool right = object.Set_Db_Value(text);
        object.Get_Db_Value(text);
        object.Add_Date(1, 1, 1);
        object.Add_Time(1, 1, 1);
        copy = object;
        right &= object == copy && object.Compare_Date(copy) == 0 && object.Set_Hour(5);
        object.Get_Value(record);
        object.Get_Value(count, false);
        right &= object.Set_Value(count, false) && object.Set_Date_Value(record);
        if (!right) return -1;
    }
    AfxSetAllocHook(before);
    return g_Allocations / 2.0;
}

// -------------------------------------------------------------------------------------------------

const bool g_Registered = [] {
    const auto add = [](const std::string& name, auto... run) {
        benchmark::RegisterBenchmark(name.c_str(), run...);
    };
    add("Set_Db_Value, Get_Db_Value/ours", Db_Text);
    add("Set_Db_Value, Get_Db_Value/strptime, timegm, strftime", Db_Text_By_C);
    Set_Bar({"Set_Db_Value, Get_Db_Value", 3, 0, {}});

    const auto add_sums = [&](const std::string& name, auto ours, auto c, auto calendar) {
        add(name + "/ours", [=](benchmark::State& state) { Add_To_Objects(state, ours); });
        add(name + "/gmtime_r, timegm", [=](benchmark::State& state) { Add_To_Times(state, c); });
        add(name + "/std::chrono",
            [=](benchmark::State& state) { Add_To_Calendar(state, calendar); });
        Set_Bar({name, 3, 0, {"gmtime_r, timegm"}});
        Set_Bar({name, At_Most_Times(3), 0, {"std::chrono"}});
    };
    using std::chrono::year_month_day;
    add_sums(
        "Add_Date of months", [](RVDateTime& object, int sign) { object.Add_Date(0, sign * 7, 0); },
        [](std::tm& time, int sign) { time.tm_mon += sign * 7; },
        [](year_month_day date, int sign) {
            date += std::chrono::months(sign * 7);
            return date.ok() ? date : date.year() / date.month() / std::chrono::last;
        });
    add_sums(
        "Add_Date of days", [](RVDateTime& object, int sign) { object.Add_Date(0, 0, sign * 77); },
        [](std::tm& time, int sign) { time.tm_mday += sign * 77; },
        [](year_month_day date, int sign) {
            return year_month_day(std::chrono::sys_days(date) + std::chrono::days(sign * 77));
        });
    add("Add_Time/ours", [](benchmark::State& state) {
        Add_To_Objects(state,
                       [](RVDateTime& object, int sign) { object.Add_Time(sign, 2 * sign, 3); });
    });
    add("Add_Time/gmtime_r, timegm", [](benchmark::State& state) {
        Add_To_Times(state, [](std::tm& time, int sign) {
            time.tm_hour += sign;
            time.tm_min += 2 * sign;
            time.tm_sec += 3;
        });
    });
    Set_Bar({"Add_Time", 3, 0, {}});

    add("operator</ours", [](benchmark::State& state) {
        Compare_Objects(state, [](auto& left, auto& right) { return left < right; });
    });
    add("Compare_Date/ours", [](benchmark::State& state) {
        Compare_Objects(state, [](auto& left, auto& right) { return left.Compare_Date(right); });
    });
#if defined(BENCH_WITH_ABSEIL)
    add("operator</CivilSecond", Compare_Abseil);
    add("Compare_Date/CivilSecond", Compare_Abseil);
#endif
    Set_Bar({"operator<", At_Most_Times(2), 0, {}});

    add("seconds to a value and back/ours", Counts);
    add("seconds to a value and back/localtime_r, mktime", Counts_By_C);
    Set_Bar({"seconds to a value and back", At_Most_Times(1.3), 0, {}});

    for (const char* language : {"en_US", "de_DE", "ja_JP"}) {
        const std::string show = std::string("Get_Value, ") + language;
        const std::string read = std::string("Set_Value, ") + language;
        add(show + "/ours", Show, language);
        add(show + "/strftime_l", Show_By_C, language);
        add(read + "/ours", Read, language);
        add(read + "/strptime_l", Read_By_C, language);
        Set_Bar({show, At_Most_Times(3), 0, {}});
        Set_Bar({read, At_Most_Times(3), 0, {}});
    }
    return Add_Figure(
        {"memory of a date-time value", "allocations an object", 1, Count_Allocations});
}();

}  // namespace
