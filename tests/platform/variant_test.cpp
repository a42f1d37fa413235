// Variants and their arrays: which there are, and that copies share nothing.
#include <RVUtils/winapi.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "allocation_sweep.h"
#include "owning_variants.h"

namespace {

using rv_test::CountedObject;

VARIANT Empty() {
    VARIANT variant;
    VariantInit(&variant);
    return variant;
}

TEST(Variant, TakesTheTagsThatThereAre) {
    // With a flag, "empty" and "null" say nothing.
    constexpr struct {
        int flags;
        int first;  // -1: none
    } kRows[] = {{0, 0},       {VT_ARRAY, 2}, {VT_BYREF, 2}, {VT_ARRAY | VT_BYREF, 2},
                 {0x1000, -1}, {0x8000, -1},  {0x800, -1}};
    for (const auto& row : kRows)
        for (int type = 0; type < 32; ++type) {
            SCOPED_TRACE(testing::Message() << row.flags << " + " << type);
            const bool known = type < 24 && type != 15 && row.first >= 0 && type >= row.first;
            const HRESULT expected = known ? S_OK : DISP_E_BADVARTYPE;
            VARIANT source = Empty(), target = Empty();
            source.vt = static_cast<VARTYPE>(row.flags | type);
            source.byref = row.flags & VT_BYREF ? &source : nullptr;
            EXPECT_EQ(VariantCopy(&target, &source), expected);
            EXPECT_EQ(target.vt, known ? source.vt : VARTYPE(VT_EMPTY));
            if (target.vt & VT_BYREF) {
                EXPECT_EQ(target.byref, &source);
            }
            EXPECT_EQ(VariantClear(&source), expected);
            EXPECT_EQ(source.vt, known ? VT_EMPTY : row.flags | type);
            VariantClear(&target);
        }
}

TEST(Variant, CopiesArraysDeepOrNotAtAll) {
    CountedObject object, old_value;
    VARIANT source = rv_test::Nested_Array(object);
    rv_test::Sweep_Allocations([&] {
        VARIANT target = Empty();
        target.vt = VT_UNKNOWN;
        target.punkVal = &old_value;
        old_value.AddRef();
        const HRESULT status = VariantCopy(&target, &source);
        EXPECT_EQ(old_value.Held(), 0);
        if (status != S_OK) {
            EXPECT_EQ(status, E_OUTOFMEMORY);
            EXPECT_EQ(target.vt, VT_EMPTY);
            EXPECT_EQ(object.Held(), 2);
            return;
        }
        EXPECT_EQ(object.Held(), 4);
        const auto* const from = static_cast<const VARIANT*>(source.parray->pvData);
        const auto* const to = static_cast<const VARIANT*>(target.parray->pvData);
        EXPECT_NE(to[0].bstrVal, from[0].bstrVal);
        EXPECT_EQ(SysStringByteLen(to[0].bstrVal), 7u);
        EXPECT_EQ(std::memcmp(to[0].bstrVal, "odd\0odd", 7), 0);
        EXPECT_NE(to[1].parray, from[1].parray);
        const auto* const texts = static_cast<const BSTR*>(to[1].parray->pvData);
        EXPECT_STREQ(texts[0], L"inner");
        EXPECT_NE(texts[0], *static_cast<const BSTR*>(from[1].parray->pvData));
        EXPECT_EQ(SysStringLen(texts[1]), 0u);
        EXPECT_EQ(static_cast<IUnknown**>(to[2].parray->pvData)[0], &object);
        EXPECT_EQ(static_cast<IDispatch**>(to[3].parray->pvData)[1], &object);
        EXPECT_EQ(VariantClear(&target), S_OK);
        EXPECT_EQ(object.Held(), 2);
    });
    EXPECT_EQ(VariantClear(&source), S_OK);
    EXPECT_EQ(object.Held(), 0);
}

TEST(SafeArray, HasZeroElementsOfThePublishedSize) {
    constexpr ULONG kPointer = sizeof(void*);
    constexpr ULONG kBytes[] = {
        0,        0,  2, 4, 4, 8, 8, 8, kPointer, kPointer, 4, 2, sizeof(VARIANT),
        kPointer, 16, 0, 1, 1, 2, 4, 8, 8,        4,        4, 0};
    for (VARTYPE type = 0; type < std::size(kBytes); ++type) {
        SCOPED_TRACE(type);
        SAFEARRAY* const array = SafeArrayCreateVector(type, -3, 5);
        ASSERT_EQ(array != nullptr, kBytes[type] != 0);
        if (!array) continue;
        EXPECT_EQ(array->cbElements, kBytes[type]);
        const auto* const bytes = static_cast<const BYTE*>(array->pvData);
        EXPECT_TRUE(std::all_of(bytes, bytes + 5 * kBytes[type], [](BYTE byte) { return !byte; }));
        array->cLocks = 1;
        EXPECT_EQ(SafeArrayDestroy(array), DISP_E_ARRAYISLOCKED);
        array->cLocks = 0;
        EXPECT_EQ(SafeArrayDestroy(array), S_OK);
    }
}

}  // namespace
