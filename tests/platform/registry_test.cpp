// Keys and values, as either platform keeps them.
#include <gtest/gtest.h>

#include <vector>

#include "test_registry.h"

namespace {

using rv_test::TestKey;
using rv_test::TestRegistry;

constexpr char kPath[] = "Software\\rv_test";

std::vector<std::string> Subkeys(HKEY key) {
    std::vector<std::string> names;
    char name[256];
    for (DWORD length = sizeof name;
         RegEnumKeyExA(key, static_cast<DWORD>(names.size()), name, &length, nullptr, nullptr,
                       nullptr, nullptr) == ERROR_SUCCESS;
         length = sizeof name)
        names.emplace_back(name, length);
    return names;
}

TEST(Registry, GivesBackWhatWasSet) {
    const TestRegistry registry(HKEY_CURRENT_USER, kPath);
    const TestKey key(HKEY_CURRENT_USER, kPath);
    using namespace std::string_literals;
    const struct {
        const char* name;
        DWORD type;
        std::string data;
    } kRows[] = {
        {"text", REG_SZ, "C:\\a \"b\" ;c=]\t[d\0"s},
        {"two lines", REG_SZ, "a\r\nb\0"s},
        {"TEXT", REG_SZ, "in the place of the first\0"s},
        {"two texts in one", REG_SZ, "a\0b\0"s},
        {nullptr, REG_SZ, "without a name\0"s},
        {"a \"name\" \\ = [x] ; @", REG_SZ, " blanks \0"s},
        {"no text", REG_SZ, "\0"s},
        {"variables", REG_EXPAND_SZ, "%TEMP%\\x\0"s},
        {"texts", REG_MULTI_SZ, "one\0two\0\0"s},
        {"number", REG_DWORD, "\x01\xFE\x80\x7F"s},
        {"short number", REG_DWORD, "\x01"s},
        {"nothing", REG_BINARY, ""s},
        {"all bytes", REG_BINARY,
         [] {
             std::string all;
             for (int i = 0; i < 256; ++i)
                 all += static_cast<char>(i);
             return all;
         }()},
        {"own type", 0x1234, "\xFF\x00"s},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(key.Set(row.name, row.type, row.data), ERROR_SUCCESS);
        EXPECT_EQ(key.Get(row.name), std::to_string(row.type) + ':' + row.data)
            << (row.name ? row.name : "(none)");
    }
    EXPECT_EQ(key.Get("text"), "1:in the place of the first\0"s);
    EXPECT_EQ(key.Get("none"), "status 2");
    EXPECT_EQ(RegDeleteValueA(key.handle, "Text"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteValueA(key.handle, "Text"), LSTATUS{ERROR_FILE_NOT_FOUND});

    BYTE data[4] = {9, 9, 9, 9};
    DWORD type = 0, size = 3;
    EXPECT_EQ(RegQueryValueExA(key.handle, "number", nullptr, &type, data, &size),
              LSTATUS{ERROR_MORE_DATA});
    EXPECT_TRUE(size == 4 && type == REG_DWORD);
    EXPECT_EQ(RegQueryValueExA(key.handle, "number", nullptr, nullptr, nullptr, &size),
              ERROR_SUCCESS);
    EXPECT_EQ(RegQueryValueExA(key.handle, "number", nullptr, nullptr, data, nullptr),
              LSTATUS{ERROR_INVALID_PARAMETER});
}

TEST(Registry, HasKeysInATree) {
    const TestRegistry registry(HKEY_CURRENT_USER, kPath);
    const TestKey key(HKEY_CURRENT_USER, kPath), below(key.handle, "Bravo\\Charlie\\Delta"),
        again(HKEY_CURRENT_USER, "SOFTWARE\\RV_TEST\\bravo\\charlie"), other(key.handle, "alpha"),
        reader(HKEY_CURRENT_USER, kPath, KEY_READ);
    EXPECT_EQ(below.disposition, DWORD{REG_CREATED_NEW_KEY});
    EXPECT_EQ(again.disposition, DWORD{REG_OPENED_EXISTING_KEY});
    EXPECT_EQ(Subkeys(key.handle), (std::vector<std::string>{"alpha", "Bravo"}));
    EXPECT_EQ(Subkeys(again.handle), std::vector<std::string>{"Delta"});
    key.Set("a value", REG_SZ, "");
    DWORD keys = 9, values = 9;
    EXPECT_EQ(RegQueryInfoKeyA(key.handle, nullptr, nullptr, nullptr, &keys, nullptr, nullptr,
                               &values, nullptr, nullptr, nullptr, nullptr),
              ERROR_SUCCESS);
    EXPECT_TRUE(keys == 2 && values == 1) << keys << ' ' << values;

    EXPECT_EQ(reader.Set("a value", REG_SZ, "x"), LSTATUS{ERROR_ACCESS_DENIED});
    EXPECT_EQ(RegDeleteKeyA(key.handle, "Bravo\\Charlie"), LSTATUS{ERROR_ACCESS_DENIED});
    EXPECT_EQ(RegDeleteKeyA(key.handle, "Bravo\\Charlie\\Delta"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteKeyA(key.handle, "Bravo\\Charlie\\Delta"), LSTATUS{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(RegDeleteKeyA(key.handle, "bravo\\charlie"), ERROR_SUCCESS);
    EXPECT_EQ(again.Set("a value", REG_SZ, ""), LSTATUS{ERROR_KEY_DELETED});
    char name[5];
    DWORD length = sizeof name;
    EXPECT_EQ(RegEnumKeyExA(key.handle, 0, name, &length, nullptr, nullptr, nullptr, nullptr),
              LSTATUS{ERROR_MORE_DATA});
    EXPECT_EQ(RegEnumKeyExA(key.handle, 2, name, &length, nullptr, nullptr, nullptr, nullptr),
              LSTATUS{ERROR_NO_MORE_ITEMS});

    HKEY opened = nullptr;
    EXPECT_EQ(RegOpenKeyExA(key.handle, "none", 0, KEY_READ, &opened),
              LSTATUS{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(RegOpenKeyExA(nullptr, kPath, 0, KEY_READ, &opened), LSTATUS{ERROR_INVALID_HANDLE});
    EXPECT_EQ(RegOpenKeyExA(key.handle, nullptr, 0, KEY_READ, &opened), ERROR_SUCCESS);
    EXPECT_EQ(Subkeys(opened).size(), 2U);
    EXPECT_EQ(RegCloseKey(opened), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS);
}

TEST(Registry, HasTheClassesBelowTheMachine) {
    const TestRegistry registry(HKEY_CLASSES_ROOT, "rv_test");
    const TestKey key(HKEY_CLASSES_ROOT, "rv_test");
    HKEY opened = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, "Software\\Classes\\rv_test", 0, KEY_READ, &opened),
              ERROR_SUCCESS);
    RegCloseKey(opened);
}

}  // namespace
