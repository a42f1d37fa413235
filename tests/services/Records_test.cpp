// Copies of the sibling libraries' records, field by field, also where one cannot be copied.
#include <RVUtils/CAtlException.h>
#include <RVUtils/RVAppInfo.h>
#include <RVUtils/RVMasterSettings.h>
#include <RVUtils/RVRegTool.h>
#include <RVUtils/RVbsuErrorLog.h>
#include <RVUtils/SuiteConstants.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <memory>
#include <numeric>
#include <string>

#include "allocation_sweep.h"
#include "owning_variants.h"
#include "test_registry.h"

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

TEST(RVRegTool, ReadsTextsAndNumbersOfASection) {
    using namespace std::string_literals;
    constexpr char kPath[] = "Software\\rv_test";
    const rv_test::TestRegistry registry(HKEY_CURRENT_USER, kPath);
    const rv_test::TestKey key(HKEY_CURRENT_USER, kPath),
        section(key.handle, "Application Settings");
    const struct {
        const char* name;
        DWORD type;
        std::string data;
        const char* text;  // "before" where it is not read
    } kRows[] = {
        {"AppPath", REG_SZ, "C:\\a directory\\of some length\0"s,
         "C:\\a directory\\of some length"},
        {"LriPath", REG_EXPAND_SZ, "%TEMP%\\x\0"s, "%TEMP%\\x"},
        {"empty", REG_SZ, "\0"s, ""},
        {"two texts", REG_SZ, "a\0b\0"s, "a"},
        {"number", REG_DWORD, "\xFF\xFF\xFF\xFF", "4294967295"},
        {"short number", REG_DWORD, "\1", "before"},
        {"bytes", REG_BINARY, "abc", "before"},
    };
    RVRegTool tool(HKEY_CURRENT_USER, kPath);
    for (const auto& row : kRows) {
        section.Set(row.name, row.type, row.data);
        RVRegTool copy(tool);
        RVString text("before");
        EXPECT_EQ(copy.Get_Value(row.name, "Application Settings", text, 1), row.text != "before"s);
        EXPECT_EQ(text, row.text) << row.name;
        EXPECT_STREQ(copy.m_Fixed_Text, row.name);
        tool = copy;
        EXPECT_EQ(tool.m_Flag, row.text != "before"s);
        EXPECT_TRUE(std::ranges::equal(tool.m_Fixed_Text, copy.m_Fixed_Text));
    }
    const RVString long_name(CString('n', 200));
    RVString text;
    EXPECT_FALSE(tool.Get_Value(long_name, "none", text, 1));
    EXPECT_EQ(std::strlen(tool.m_Fixed_Text), 128U);
    EXPECT_EQ(tool.m_Third, ULONG{ERROR_FILE_NOT_FOUND});
    EXPECT_FALSE(RVRegTool(key.handle, "none").Get_Value("AppPath", "", text, 1));
    EXPECT_TRUE(RVRegTool(key.handle, "").Get_Value("AppPath", rv::kApplicationSettings, text, 1));
    EXPECT_TRUE(RVRegTool(section.handle, "").Get_Value("AppPath", "", text, 1));
    EXPECT_EQ(text, kRows[0].text);
    EXPECT_GE(rv_test::Sweep_Exceptions(
                  [&] { EXPECT_TRUE(tool.Get_Value("AppPath", "Application Settings", text, 1)); }),
              3);
}

}  // namespace
