// Copies of the sibling libraries' records, field by field, also where one cannot be copied.
#include <RVUtils/CAtlException.h>
#include <RVUtils/RVAppInfo.h>
#include <RVUtils/RVMasterSettings.h>
#include <RVUtils/RVbsuErrorLog.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <iterator>
#include <memory>
#include <numeric>

#include "allocation_sweep.h"
#include "owning_variants.h"

namespace {

using rv_test::CountedObject;
using rv_test::Sweep_Allocations;

constexpr HRESULT kBadType = static_cast<HRESULT>(0x80020008);

// What an application makes of a record.
struct Extended : RVAppInfo {
    int more = 1;
};

TEST(RVAppInfo, IsCopiedWithTheBytesBehindTheText) {
    Extended source;
    source.m_Text = "a text that needs memory of its own";
    std::iota(std::begin(source.m_Fixed_Text), std::end(source.m_Fixed_Text), '\x80');
    source.m_Fixed_Text[2] = '\0';
    source.m_Number = 0xFEDCBA98;
    const std::unique_ptr<RVAppInfo> copy(new Extended(source));
    RVAppInfo assigned;
    assigned = *copy;
    const RVAppInfo& self = assigned;
    assigned = self;
    EXPECT_EQ(assigned.m_Text, source.m_Text);
    EXPECT_TRUE(std::ranges::equal(assigned.m_Fixed_Text, source.m_Fixed_Text));
    EXPECT_EQ(assigned.m_Number, source.m_Number);

    RVAppInfo target;
    const int failures = Sweep_Allocations([&] {
        try {
            target = source;
        } catch (CMemoryException* exception) {
            exception->Delete();
            EXPECT_TRUE(target.m_Text.IsEmpty() && target.m_Number == 0);
        }
    });
    EXPECT_EQ(failures, 1);
    const RVbsuErrorLog log, log_copy(log);
    RVbsuErrorLog().operator=(log_copy);
}

RVMasterSettings Settings(CountedObject& object) {
    RVMasterSettings settings;
    settings.m_First = 1;
    settings.m_Second = 0x80000000;
    settings.m_Open = true;
    settings.m_Value.vt = VT_UNKNOWN;
    settings.m_Value.punkVal = &object;
    object.AddRef();
    return settings;
}

TEST(RVMasterSettings, AreCopiedUpToAValueThatCannotBe) {
    CountedObject object;
    {
        RVMasterSettings source = Settings(object), target(source);
        EXPECT_EQ(object.Held(), 2);
        const int taken = object.Taken();
        const RVMasterSettings& self = target;
        target = self;
        EXPECT_EQ(object.Taken(), taken) << "the value of the same record is not touched";
        EXPECT_TRUE(target.Is_Open() && target.m_Value.punkVal == &object);
        EXPECT_EQ(target.m_First, 1U);
        EXPECT_EQ(target.m_Second, 0x80000000);

        RVMasterSettings damaged;
        damaged.m_Second = 2;
        damaged.m_Value.vt = 0x7F;
        EXPECT_THROW(RVMasterSettings{damaged}, ATL::CAtlException);
        try {
            target = damaged;
            ADD_FAILURE() << "copied";
        } catch (const ATL::CAtlException& exception) {
            EXPECT_EQ(exception.m_hr, kBadType);
        }
        EXPECT_FALSE(target.Is_Open());
        EXPECT_EQ(target.m_First, 0U);
        EXPECT_EQ(target.m_Second, 2U);
        EXPECT_EQ(target.m_Value.vt, VT_ERROR);
        EXPECT_EQ(target.m_Value.scode, kBadType);
        EXPECT_EQ(object.Held(), 1) << "what the target held is given back";
        damaged.m_Value.vt = VT_EMPTY;
    }
    EXPECT_EQ(object.Held(), 0);
}

// Texts of variants are Windows' own there, which the hook does not reach.
TEST(RVMasterSettings, TellExhaustedMemoryByItsException) {
    RVMasterSettings source;
    source.m_Value.vt = VT_BSTR;
    source.m_Value.bstrVal = SysAllocString(L"text");
    Sweep_Allocations([&] {
        RVMasterSettings target;
        try {
            target = source;
            EXPECT_EQ(std::wcscmp(target.m_Value.bstrVal, L"text"), 0);
        } catch (CMemoryException* exception) {
            exception->Delete();
            EXPECT_EQ(target.m_Value.vt, VT_ERROR);
            EXPECT_EQ(target.m_Value.scode, E_OUTOFMEMORY);
        }
    });
}

}  // namespace
