// The strictly typed variant: what is made from each type, who reads it, and who owns what.
#include <RVUtils/CAtlException.h>
#include <RVUtils/CException.h>
#include <RVUtils/RVVariant.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>

#include "allocation_sweep.h"
#include "owning_variants.h"

namespace {

using namespace std::string_view_literals;
using rv_test::CountedObject;

// What would silently be taken for something else does not compile.
template <class... Types>
constexpr bool kNone_Makes_A_Variant = (!std::is_constructible_v<RVVariant, Types> && ...);
static_assert(kNone_Makes_A_Variant<signed char, unsigned int, long long, void*, const void*,
                                    unsigned char*, int*, RVString*, std::nullptr_t>);

// Reads as one type: "name=value ", or nothing; the output then has to be as it was.
template <class Value>
std::string Read(const RVVariant& variant, const char* name, Value before) {
    Value output = before;
    const HRESULT status = variant.Get_Value(output);
    if (status != S_OK) {
        EXPECT_EQ(status, E_FAIL) << name;
        EXPECT_TRUE(output == before) << name;
        return "";
    }
    std::ostringstream text;
    text << name << '=';
    if constexpr (std::is_same_v<Value, wchar_t*>)
        text << CString(output).GetString();
    else if constexpr (std::is_same_v<Value, RVString>)
        text << output.GetString();
    else if constexpr (std::is_pointer_v<Value>)
        text << output->Release();
    else
        text << +output;
    return text.str() + ' ';
}

// Every type that reads the variant, with what it reads.
std::string Readers(const RVVariant& variant) {
    static wchar_t wide[] = L"before";
    static CountedObject other;
    return Read<char>(variant, "char", '#') + Read<unsigned char>(variant, "uchar", 77) +
           Read<short>(variant, "short", 77) + Read<unsigned short>(variant, "ushort", 77) +
           Read<int>(variant, "int", 77) + Read<long>(variant, "long", 77) +
           Read<unsigned long>(variant, "ulong", 77) + Read<float>(variant, "float", 77) +
           Read<double>(variant, "double", 77) + Read<bool>(variant, "bool", true) +
           Read<bool>(variant, "bool", false) + Read<wchar_t*>(variant, "wide", wide) +
           Read<RVString>(variant, "text", "before") +
           Read<IDispatch*>(variant, "dispatch", &other) +
           Read<IUnknown*>(variant, "unknown", &other);
}

RVVariant With(VARTYPE tag, VARIANT_BOOL number) {
    VARIANT variant;
    VariantInit(&variant);
    variant.vt = tag;
    variant.parray = nullptr;
    variant.boolVal = number;
    return variant;
}

TEST(RVVariant, GivesItsValueToOneTypeAlone) {
    CountedObject object;
    RVString text = "of RVString";
    wchar_t wide[] = L"wide\0hidden";
    char narrow[] = "narrow";
    IDispatch* const no_dispatch = nullptr;
    IUnknown* const no_unknown = nullptr;
    const struct {
        RVVariant variant;
        VARTYPE tag;
        const char* readers;
    } kRows[] = {
        {RVVariant(), VT_EMPTY, ""},
        {'A', VT_I1, "char=65 "},
        {static_cast<unsigned char>(200), VT_UI1, "uchar=200 "},
        {static_cast<short>(-32768), VT_I2, "short=-32768 "},
        {static_cast<unsigned short>(65535), VT_UI2, "ushort=65535 "},
        {5, VT_BOOL, "int=1 bool=1 bool=1 "},
        {0, VT_BOOL, "int=0 bool=0 bool=0 "},
        {-2147483647L - 1, VT_I4, "long=-2147483648 "},
        {static_cast<long>(0x7'8000'0001LL), VT_I4, "long=-2147483647 "},
        {4294967295UL, VT_UI4, "ulong=4294967295 "},
        {static_cast<unsigned long>(0x7'0000'0005ULL), VT_UI4, "ulong=5 "},
        {0.5F, VT_R4, "float=0.5 "},
        {-0.25, VT_R8, "double=-0.25 "},
        {true, VT_BOOL, "int=1 bool=1 bool=1 "},
        {false, VT_BOOL, "int=0 bool=0 bool=0 "},
        {With(VT_BOOL, -1), VT_BOOL, "int=1 bool=1 bool=1 "},
        {With(VT_BOOL, 1), VT_BOOL, "int=0 bool=0 bool=0 "},
        {With(VT_BOOL, 255), VT_BOOL, "int=0 bool=0 bool=0 "},
        {wide, VT_BSTR, "wide=wide text=wide "},
        {L"constant", VT_BSTR, "wide=constant text=constant "},
        {narrow, VT_BSTR, "wide=narrow text=narrow "},
        {"", VT_BSTR, "wide= text= "},
        {text, VT_BSTR, "wide=of RVString text=of RVString "},
        {static_cast<wchar_t*>(nullptr), VT_BSTR, "wide= text= "},
        {static_cast<const char*>(nullptr), VT_BSTR, "wide= text= "},
        {&object, VT_DISPATCH, "dispatch=2 "},  // this row and the next
        {static_cast<IUnknown*>(&object), VT_UNKNOWN, "unknown=2 "},
        {no_dispatch, VT_DISPATCH, ""},
        {no_unknown, VT_UNKNOWN, ""},
        {With(VT_ERROR, -1), VT_ERROR, ""},
        {With(VT_DATE, -1), VT_DATE, ""},
        {With(VT_INT, -1), VT_INT, ""},
        {With(VT_UINT, -1), VT_UINT, ""},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(testing::Message() << "row " << &row - kRows << ": " << row.readers);
        EXPECT_EQ(row.variant.vt, row.tag);
        EXPECT_EQ(Readers(row.variant), row.readers);
    }
}

TEST(RVVariant, TakesNoMemoryForPlainTypes) {
    const auto make_and_read = [] {
        const RVVariant variants[] = {'A', short{1}, 2, 3L, 4UL, 0.5F, 0.25, true};
        for (const RVVariant& variant : variants)
            EXPECT_NE(Readers(variant), "");
    };
    EXPECT_EQ(rv_test::Sweep_Allocations(make_and_read), 0);
}

TEST(RVVariant, HoldsOneReferenceAndGivesItBack) {
    CountedObject object;
    {
        RVVariant first(&object), second(first);
        const RVVariant third(static_cast<const VARIANT&>(first));
        const RVVariant fourth(static_cast<const ATL::CComVariant&>(first));
        EXPECT_EQ(object.Held(), 4);
        const RVVariant& itself = second;
        EXPECT_EQ(&(second = itself), &second);
        EXPECT_EQ(object.Taken(), 4) << "self-assignment does nothing";
        second = static_cast<IUnknown*>(&object);
        EXPECT_EQ(second.vt, VT_UNKNOWN);
        EXPECT_EQ(object.Held(), 4);
        first = 1.5;
        EXPECT_EQ(Readers(first), "double=1.5 ");
        EXPECT_EQ(object.Held(), 3);
    }
    EXPECT_EQ(object.Held(), 0);
}

TEST(RVVariant, MakesTextsWideByTheirCountedLength) {
    RVString text = "a";
    text += '\0';
    text += 'b';
    const RVVariant variant(text), empty("");
    EXPECT_EQ(std::wstring_view(variant.bstrVal, SysStringLen(variant.bstrVal)), L"a\0b"sv);
    ASSERT_NE(empty.bstrVal, nullptr);
    EXPECT_EQ(SysStringByteLen(empty.bstrVal), 0u);
}

TEST(RVVariant, ReadsAnyArrayByItsBytes) {
    const ULONG numbers[] = {0x00020001, 0xFFFFFFFF, 0x80007FFF};
    for (const VARTYPE type : {VT_UI4, VT_R4}) {
        VARIANT source = rv_test::Array_Of<ULONG>(type, {numbers[0], numbers[1], numbers[2]});
        const RVVariant copy(source);
        std::memset(source.parray->pvData, 0, sizeof numbers);
        RVVariant reference;
        reference.pparray = const_cast<SAFEARRAY**>(&copy.parray);
        reference.vt = static_cast<VARTYPE>(VT_BYREF | VT_ARRAY | type);
        for (const RVVariant* variant : {&copy, static_cast<const RVVariant*>(&reference)}) {
            std::array<unsigned long, 4> longs = {7, 7, 7, 7};
            std::array<short, 6> shorts = {7, 7, 7, 7, 7, 7};
            EXPECT_EQ(variant->Get_Value(longs.data(), 3), S_OK);
            EXPECT_EQ(variant->Get_Value(shorts.data(), 5), S_OK);
            EXPECT_EQ(longs, (std::array{0x00020001ul, 0xFFFFFFFFul, 0x80007FFFul, 7ul}));
            EXPECT_EQ(shorts, (std::array<short, 6>{1, 2, -1, -1, 32767, 7}));
            EXPECT_EQ(Readers(*variant), "");
        }
        VariantClear(&source);
    }
    unsigned long number = 7;
    short small = 7;
    EXPECT_EQ(With(VT_ARRAY | VT_I2, 0).Get_Value(&small, 0), S_OK) << "no array has no elements";
    EXPECT_EQ(With(VT_I2, 0).Get_Value(&small, 0), E_FAIL);
    EXPECT_EQ(With(VT_UI4, 0).Get_Value(&number, 1), E_FAIL);
    EXPECT_EQ(number + static_cast<unsigned long>(small), 14u);
}

// The status that is thrown, S_OK for none.
template <class Act>
HRESULT Thrown(Act act) {
    try {
        act();
    } catch (const ATL::CAtlException& error) {
        return error.m_hr;
    }
    return S_OK;
}

TEST(RVVariant, TellsTheStatusOfACopyThatFails) {
    for (const VARTYPE tag :
         std::initializer_list<VARTYPE>{15, 24, 0x7FF, 0x1008, VT_ARRAY, 0x8003}) {
        SCOPED_TRACE(tag);
        CountedObject object;
        RVVariant target(&object), source;
        source.vt = tag;
        EXPECT_EQ(Thrown([&] { RVVariant copy(source); }), DISP_E_BADVARTYPE);
        EXPECT_EQ(Thrown([&] { target = source; }), DISP_E_BADVARTYPE);
        EXPECT_EQ(target.vt, VT_ERROR);
        EXPECT_EQ(target.scode, DISP_E_BADVARTYPE);
        EXPECT_EQ(object.Held(), 0);
        EXPECT_EQ(Thrown([&] { source = target; }), DISP_E_BADVARTYPE) << "cannot be cleared";
        EXPECT_EQ(source.vt, VT_ERROR);
    }
    SAFEARRAY* const array = SafeArrayCreateVector(VT_I2, 0, 2);
    RVVariant locked;
    locked.vt = VT_ARRAY | VT_I2;
    locked.parray = array;
    array->cLocks = 1;
    EXPECT_EQ(Thrown([&] { locked = RVVariant(1.5); }), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(locked.scode, DISP_E_ARRAYISLOCKED);
    array->cLocks = 0;
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

// Only our own layer takes the memory of texts and arrays where it can be refused.
TEST(RVVariant, HoldsTheStatusWhereMemoryRunsOut) {
    CountedObject object, old_value;
    RVString text = "of RVString";
    VARIANT nested = rv_test::Nested_Array(object);
    const RVVariant source(nested);
    const std::function<RVVariant()> kMakers[] = {
        [] { return RVVariant(L"wide"); },
        [] { return RVVariant("narrow"); },
        [&] { return RVVariant(text); },
        [&] { return RVVariant(nested); },
    };
    for (const auto& make : kMakers)
        rv_test::Sweep_Allocations([&] {
            RVVariant target(&old_value);
            try {
                const RVVariant made = make();
                target = source;
                EXPECT_EQ(target.vt, source.vt);
                EXPECT_FALSE(rv_test::FailingAllocation::Failed());
            } catch (CMemoryException* error) {
                error->Delete();
                EXPECT_TRUE(target.vt == VT_DISPATCH || target.scode == E_OUTOFMEMORY);
                EXPECT_EQ(target.vt == VT_DISPATCH, old_value.Held() == 1);
                EXPECT_EQ(object.Held(), 4);
            }
        });
    VariantClear(&nested);
    EXPECT_EQ(object.Held() + old_value.Held(), 2) << "those of the source";
}

}  // namespace
