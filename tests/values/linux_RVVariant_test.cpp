// Variants whose memory runs out; Windows takes it from a heap of its own.
#include <RVUtils/CException.h>
#include <RVUtils/RVVariant.h>
#include <gtest/gtest.h>

#include <functional>

#include "allocation_sweep.h"
#include "owning_variants.h"

namespace {

using rv_test::CountedObject;
using rv_test::Sweep_Allocations;

// Whether the heap was exhausted.
template <class Act>
bool Throws(Act act) {
    try {
        act();
    } catch (CMemoryException* error) {
        error->Delete();
        return true;
    }
    return false;
}

TEST(RVVariantMemory, EveryConstructorThatCopiesThrows) {
    CountedObject object;
    RVString text = "of RVString";
    VARIANT nested = rv_test::Nested_Array(object);
    const RVVariant source(nested);
    const std::function<RVVariant()> kMakers[] = {
        [] { return RVVariant(L"wide"); }, [] { return RVVariant("narrow"); },
        [&] { return RVVariant(text); },   [&] { return RVVariant(nested); },
        [&] { return RVVariant(source); },
    };
    for (const auto& make : kMakers) {
        SCOPED_TRACE(&make - kMakers);
        bool thrown = false;
        EXPECT_GT(Sweep_Allocations([&] {
                      thrown = Throws([&] { (void)make(); });
                      EXPECT_EQ(thrown, rv_test::FailingAllocation::Failed());
                      EXPECT_EQ(object.Held(), 4);
                  }),
                  0);
        EXPECT_FALSE(thrown);
    }
    VariantClear(&nested);
}

TEST(RVVariantMemory, AFailedAssignmentHoldsTheStatus) {
    CountedObject object, other;
    VARIANT nested = rv_test::Nested_Array(object);
    for (const RVVariant& source : {RVVariant("text"), RVVariant(nested)}) {
        const int held = object.Held();
        EXPECT_GT(Sweep_Allocations([&] {
                      RVVariant target(&other);
                      if (Throws([&] { target = source; })) {
                          EXPECT_EQ(target.vt, VT_ERROR);
                          EXPECT_EQ(target.scode, E_OUTOFMEMORY);
                          EXPECT_EQ(object.Held(), held);
                      } else {
                          EXPECT_EQ(target.vt, source.vt);
                      }
                      EXPECT_EQ(other.Held(), 0);
                  }),
                  0);
    }
    VariantClear(&nested);
    EXPECT_EQ(object.Held(), 0);
}

}  // namespace
