// What the benchmark programs state about their rows; ratio_main.cpp runs them and prints the
// table.
//
// A benchmark is registered with Google Benchmark under "<work>/ours" or "<work>/<peer>", with its
// bytes or its items processed set. The contenders of one work are run in turn, three times over,
// and the medians are compared.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace rv_bench {

// What a work has to reach. A work can have several bars, each about other peers.
struct Bar {
    std::string work;
    double least;                    // ours at least so many times as fast as the fastest peer
    double aim = 0;                  // what we would like; 0: no more than the bar
    std::vector<std::string> peers;  // the peers that the bar is about; empty: all of the work
};

// The ratio that stands for "at most `times` the peer's time".
constexpr double At_Most_Times(double times) {
    return 1.0 / times;
}

// A single measured number that has an upper bar and no peer in Google Benchmark's sense.
struct Figure {
    std::string name;
    std::string unit;
    double most;  // the bar; 0: told for comparison only
    // Runs alone in a child process of its own, before the benchmarks; a negative result or a crash
    // counts as a failure.
    std::function<double()> measure;
};

// Both are made for initialising a constant at namespace scope, and give true.
bool Set_Bar(Bar bar);
bool Add_Figure(Figure figure);

}  // namespace rv_bench
