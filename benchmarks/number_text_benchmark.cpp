// Numbers as SQL takes them, beside what the language itself has for numbers as text.

#include <RVUtils/SdkUtil.h>
#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>

#include "ratio_main.h"

namespace {

using rv_bench::At_Most_Times;
using rv_bench::Set_Bar;

using Numbers = std::array<double, 4096>;

template <class Next>
Numbers Fill(Next next) {
    std::mt19937_64 random(1);
    Numbers numbers;
    for (double& number : numbers)
        number = next(random);
    return numbers;
}

// From a millionth to a billion, with all digits that a double has.
Numbers Mixed_Magnitudes() {
    return Fill([](auto& random) {
        std::uniform_real_distribution<double> power(-6, 9);
        return (random() % 2 ? 1 : -1) * std::pow(10.0, power(random));
    });
}

Numbers Money() {
    return Fill([](auto& random) { return static_cast<double>(random() % 10'000'000) / 100; });
}

Numbers Integers() {
    return Fill([](auto& random) { return static_cast<double>(random() % 1'000'000'000); });
}

template <class Write>
void Run(benchmark::State& state, const Numbers& numbers, Write write) {
    for (auto _ : state)
        for (const double number : numbers)
            write(number);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(numbers.size()));
}

// One text after the other in the same place, as a statement is put together.
void Ours(benchmark::State& state, const Numbers& numbers) {
    RVString text;
    Run(state, numbers, [&](double number) {
        pSQL_Double_To_String(text, number);
        benchmark::DoNotOptimize(text.GetString());
    });
}

// A new text each time.
void Ours_Anew(benchmark::State& state, const Numbers& numbers) {
    Run(state, numbers, [&](double number) {
        RVString text;
        pSQL_Double_To_String(text, number);
        benchmark::DoNotOptimize(text.GetString());
    });
}

void Shortest(benchmark::State& state, const Numbers& numbers) {
    char text[400];
    Run(state, numbers, [&](double number) {
        benchmark::DoNotOptimize(std::to_chars(text, text + sizeof text, number).ptr);
        benchmark::ClobberMemory();
    });
}

void Printed(benchmark::State& state, const Numbers& numbers) {
    char text[400];
    Run(state, numbers, [&](double number) {
        benchmark::DoNotOptimize(std::snprintf(text, sizeof text, "%.15f", number));
        benchmark::ClobberMemory();
    });
}

const bool g_Registered = [] {
    const struct {
        std::string work;
        Numbers numbers;
    } kWorks[] = {
        {"mixed magnitudes", Mixed_Magnitudes()}, {"money", Money()}, {"integers", Integers()}};
    bool set = true;
    for (const auto& [work, numbers] : kWorks) {
        const auto add = [&](const char* contender, auto run) {
            benchmark::RegisterBenchmark((work + "/" + contender).c_str(), run, numbers);
        };
        add("ours", Ours);
        add("ours, a new text", Ours_Anew);
        add("to_chars", Shortest);
        add("snprintf", Printed);
        set = Set_Bar({work, 3, 0, {"snprintf"}}) && set;
        set = Set_Bar({work, At_Most_Times(1.3), 0, {"to_chars"}}) && set;
    }
    return set;
}();

}  // namespace
