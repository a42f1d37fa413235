// Variants of plain types beside a bare tagged union.

#include <RVUtils/RVVariant.h>
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <random>
#include <string>

#include "ratio_main.h"

namespace {

constexpr std::size_t kValues = 256;  // as many as stay in the first cache

// As little as tells types apart.
struct BareUnion {
    explicit BareUnion(char value) : tag(1), c(value) {}
    explicit BareUnion(short value) : tag(2), s(value) {}
    explicit BareUnion(long value) : tag(3), l(static_cast<std::int32_t>(value)) {}
    explicit BareUnion(bool value) : tag(4), b(value) {}
    explicit BareUnion(float value) : tag(5), f(value) {}
    explicit BareUnion(double value) : tag(6), d(value) {}

    bool Get(char& value) const { return tag == 1 && (value = c, true); }
    bool Get(short& value) const { return tag == 2 && (value = s, true); }
    bool Get(long& value) const { return tag == 3 && (value = l, true); }
    bool Get(bool& value) const { return tag == 4 && (value = b, true); }
    bool Get(float& value) const { return tag == 5 && (value = f, true); }
    bool Get(double& value) const { return tag == 6 && (value = d, true); }

    std::uint16_t tag;
    union {
        char c;
        short s;
        std::int32_t l;
        bool b;
        float f;
        double d;
    };
};

bool Read(const RVVariant& variant, auto& value) {
    return variant.Get_Value(value) == S_OK;
}
bool Read(const BareUnion& bare, auto& value) {
    return bare.Get(value);
}

// What happens to the object between its making and its reading is hidden.
template <class Holder, class Value>
bool Make_And_Read(Value value) {
    Holder holder(value);
    benchmark::DoNotOptimize(&holder);
    benchmark::ClobberMemory();
    Value read{};
    return Read(holder, read) && read == value;
}

// All types in turn, so that no one's place in the code decides.
template <class Holder>
void Make_And_Read_Each_Type(benchmark::State& state) {
    std::array<short, kValues> values;
    std::mt19937 random(1);
    for (short& value : values)
        value = static_cast<short>(random() % 128);
    bool right = true;
    for (auto _ : state)
        for (const short value : values) {
            right &= Make_And_Read<Holder>(static_cast<char>(value));
            right &= Make_And_Read<Holder>(value);
            right &= Make_And_Read<Holder>(static_cast<long>(value));
            right &= Make_And_Read<Holder>(value > 63);
            right &= Make_And_Read<Holder>(static_cast<float>(value));
            right &= Make_And_Read<Holder>(static_cast<double>(value));
        }
    if (!right) state.SkipWithError("wrong result");
    constexpr std::int64_t kTypes = 6;
    state.SetItemsProcessed(state.iterations() * kTypes * static_cast<std::int64_t>(kValues));
}

const bool g_Registered = [] {
    const std::string work = "make and read a variant of a plain type";
    benchmark::RegisterBenchmark((work + "/ours").c_str(), Make_And_Read_Each_Type<RVVariant>);
    benchmark::RegisterBenchmark((work + "/bare tagged union").c_str(),
                                 Make_And_Read_Each_Type<BareUnion>);
    return rv_bench::Set_Bar({work, rv_bench::At_Most_Times(1.5), 0, {}});
}();

}  // namespace
