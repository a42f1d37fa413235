// The string against the standard one, with every byte, at every edge and through every failure.
#include <RVUtils/CString.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <clocale>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "failing_element.h"
#include "test_locales.h"

namespace {

using namespace std::string_literals;
using rv_test::FailingAllocation;

CString Text(const std::string& bytes) {
    return {bytes.data(), static_cast<int>(bytes.size())};
}

std::string Bytes(const CString& text) {
    EXPECT_EQ(text.GetString()[text.GetLength()], '\0');
    EXPECT_EQ(text.IsEmpty(), text.GetLength() == 0);
    return {text.GetString(), static_cast<std::size_t>(text.GetLength())};
}

// Bytes of every kind, `length` of them.
std::string Sample(int length) {
    std::string bytes;
    for (int i = 0; i < length; ++i)
        bytes += static_cast<char>(i * 89);  // 0x00, 0x59, 0xb2, 0x0b, ...
    return bytes;
}

// Up to 15 bytes lie inside the object.
constexpr int kLengths[] = {0, 1, 14, 15, 16, 17, 40};
constexpr int kPositions[] = {INT_MIN, -2, -1, 0, 1, 2, 7, 14, 15, 16, 17, 39, 40, 41, INT_MAX};

TEST(CString, CopiesAndMovesAcrossTheInlineBoundary) {
    for (const int from : kLengths)
        for (const int to : kLengths) {
            const CString source = Text(Sample(from));
            CString target = Text(Sample(to + 1));
            target = source;
            EXPECT_EQ(Bytes(target), Sample(from));
            target = Text(Sample(to + 1));
            target = CString(source);
            EXPECT_EQ(Bytes(target), Sample(from));
            target += Text(Sample(to));
            EXPECT_EQ(Bytes(target), Sample(from) + Sample(to));
            EXPECT_EQ(Bytes(source + Text(Sample(to))), Sample(from) + Sample(to));
            EXPECT_EQ(Bytes(CString(std::move(target))), Sample(from) + Sample(to));
            EXPECT_EQ(Bytes(CString('\x80', from)),
                      std::string(static_cast<std::size_t>(from), '\x80'));
        }
    CString text = "itself, in its own memory";
    CString& same = text;
    text = same;
    text = std::move(same);
    EXPECT_EQ(Bytes(text += same), "itself, in its own memoryitself, in its own memory");
    EXPECT_EQ(Bytes("<" + CString("a") + "b" + '>'), "<ab>");
    EXPECT_EQ(Bytes(CString('x', -1)), "");
    EXPECT_EQ(Bytes(CString(static_cast<const wchar_t*>(nullptr))), "");
    for (const wchar_t* wide : {L"", L"A", L"fifteen bytes !", L"sixteen bytes !!"})
        EXPECT_EQ(Bytes(CString(wide)), std::string(wide, wide + std::wcslen(wide)));
}

TEST(CString, TakesPartsOfItself) {
    for (const int length : kLengths)
        for (int first = 0; first <= length; ++first)
            for (int count = 0; count <= length - first; ++count) {
                const std::string bytes = Sample(length);
                const auto part =
                    bytes.substr(static_cast<std::size_t>(first), static_cast<std::size_t>(count));
                CString text = Text(bytes);
                text.SetString(text.GetString() + first, count);
                ASSERT_EQ(Bytes(text), part);
                text = Text(bytes);
                text.Append(text.GetString() + first, count);
                ASSERT_EQ(Bytes(text), bytes + part);
                // The same from the room that is reserved behind the text.
                CString room = "ab";
                std::memcpy(room.GetBuffer(3 + length) + 3, bytes.data(), bytes.size());
                room.Append(room.GetString(), 3 + length);
                ASSERT_EQ(Bytes(room), "abab\0"s + bytes);
                room.SetString(room.GetString() + 5 + first, count);
                ASSERT_EQ(Bytes(room), part);
                room.ReleaseBuffer(0);
                room.SetString(room.GetString() + 1, count);
                ASSERT_EQ(Bytes(room), (part + '\0').substr(1));
            }
    CString text = "0123456789";
    EXPECT_EQ(text.Insert(5, text), 20);
    EXPECT_EQ(Bytes(text), "01234012345678956789");
    text.Insert(0, text.GetString() + 17);
    text = text.GetString() + 1;
    EXPECT_EQ(Bytes(text += text.GetString() + 20), "890123401234567895678989");
    text.Format("%s|%s", text, "x");
    EXPECT_EQ(Bytes(text), "890123401234567895678989|x");
}

TEST(CString, CutsFindsAndInsertsAtEveryPlace) {
    for (const int length : kLengths) {
        const std::string bytes = Sample(length);
        const CString text = Text(bytes);
        // The bytes with an index from `first` to below `end`.
        const auto cut = [&](long long first, long long end) {
            std::string part;
            for (int i = 0; i < length; ++i)
                if (i >= first && i < end) part += bytes[static_cast<std::size_t>(i)];
            return part;
        };
        for (const int at : kPositions) {
            EXPECT_EQ(Bytes(text.Left(at)), cut(0, at));
            EXPECT_EQ(Bytes(text.Right(at)), cut(0LL + length - at, length));
            EXPECT_EQ(Bytes(text.Mid(at)), cut(at, length));
            for (const int count : kPositions)
                EXPECT_EQ(Bytes(text.Mid(at, count)),
                          cut(at, std::max(at, 0) + std::max(0LL, 0LL + count)));
            CString longer = text;
            const CString inserted = Text("\0 in"s);
            EXPECT_EQ(longer.Insert(at, inserted), length + 4);
            EXPECT_EQ(Bytes(longer), cut(0, at) + "\0 in"s + cut(std::max(at, 0), length));
            const bool inside = at >= 0 && at <= length;
            for (const std::string& part : {""s, "\0"s, "\x59"s, "\xb2\x0b"s, bytes, "absent"s}) {
                const auto found = bytes.find(part, static_cast<std::size_t>(std::max(at, 0)));
                const int place = inside ? static_cast<int>(found) : -1;
                EXPECT_EQ(text.Find(Text(part), at), place);
                if (part.size() == 1) {
                    EXPECT_EQ(text.Find(part[0], at), place);
                }
            }
        }
    }
    EXPECT_EQ(CString("abcabc").Find("bc", 2), 4);
    EXPECT_EQ(CString("abc").GetAt(3), '\0');
    EXPECT_EQ(CString("abc")[1], 'b');
}

TEST(CString, TreatsEachByteAsItIs) {
    for (int value = 0; value < 256; ++value) {
        const char byte = static_cast<char>(value);
        const bool white = value == ' ' || (value >= 9 && value <= 13);
        const bool lower = value >= 'a' && value <= 'z';
        CString text = Text(byte + "x"s + byte + "x"s + byte);
        CString left = text;
        EXPECT_EQ(left.TrimLeft().GetLength(), white ? 4 : 5) << value;
        EXPECT_EQ(text.TrimRight().GetLength(), white ? 4 : 5) << value;
        EXPECT_EQ(CString(byte, 20).TrimRight().GetLength(), white ? 0 : 20) << value;
        EXPECT_EQ(CString(byte, 20).TrimLeft().GetLength(), white ? 0 : 20) << value;
        EXPECT_EQ(Bytes(CString(byte, 2).MakeUpper()),
                  std::string(2, static_cast<char>(lower ? value - 32 : value)));
        for (int other = 0; other < 256; ++other) {
            const CString a = Text("prefix"s + byte),
                          b = Text("prefix"s + static_cast<char>(other));
            const auto fold = [](int code) {
                return code >= 'A' && code <= 'Z' ? code + 32 : code;
            };
            ASSERT_EQ(a.Compare(b), (value > other) - (value < other)) << value << " " << other;
            ASSERT_EQ(a.CompareNoCase(b),
                      (fold(value) > fold(other)) - (fold(value) < fold(other)));
            ASSERT_EQ(a == b, value == other);
            ASSERT_EQ(a < b, value < other);
        }
    }
    EXPECT_LT(Text("a"s).Compare(Text("a\0"s)), 0);
    EXPECT_GT(Text("A\0"s).CompareNoCase("a"), 0);
    EXPECT_EQ(CString("NaMe").CompareNoCase(CString("nAmE")), 0);
    EXPECT_TRUE(CString("a") != "A");
    EXPECT_EQ(CString().Compare(static_cast<const char*>(nullptr)), 0);
}

TEST(CString, FoldsTheLettersOfASingleByteLocale) {
#if defined(_WIN32)
    constexpr const char* kLocale = "German_Germany.1252";
#else
    constexpr const char* kLocale = "de_DE.ISO-8859-1";
    const rv_test::TestLocales locales({&kLocale, 1});
#endif
    const std::string before = std::setlocale(LC_CTYPE, nullptr);
    ASSERT_NE(std::setlocale(LC_CTYPE, kLocale), nullptr);
    EXPECT_EQ(CString("\xc4pfel").CompareNoCase("\xe4PFEL"), 0);
    EXPECT_EQ(Bytes(CString("\xe4pfel").MakeUpper()), "\xc4PFEL");
    std::setlocale(LC_CTYPE, before.c_str());
}

TEST(CString, ReservesWithoutTouchingTheText) {
    for (const int length : kLengths)
        for (const int room : kLengths) {
            CString text = Text(Sample(length));
            char* const buffer = text.GetBuffer(room);
            EXPECT_EQ(Bytes(text), Sample(length));
            std::memset(buffer, 'y', static_cast<std::size_t>(room));
            text.ReleaseBuffer(room);
            text.FreeExtra();
            EXPECT_EQ(Bytes(text), std::string(static_cast<std::size_t>(room), 'y'));
        }
    CString text;
    std::strcpy(text.GetBuffer(100), "up to the NUL");
    text.ReleaseBuffer();
    EXPECT_EQ(Bytes(text), "up to the NUL");
    std::memset(text.GetBuffer(100), 'z', 100);  // none
    text.ReleaseBuffer();
    EXPECT_EQ(Bytes(text), std::string(100, 'z'));
    text.SetAt(99, '\0');
    text.ReleaseBuffer(1000000);
    EXPECT_EQ(Bytes(text), std::string(99, 'z') + '\0');
    text.Empty();
    EXPECT_EQ(Bytes(text), "");
}

template <class... Arguments>
std::string Formatted(const char* format, const Arguments&... arguments) {
    CString text;
    text.Format(format, arguments...);
    return Bytes(text);
}

TEST(CString, Formats) {
    const CString plain = "text";
    const std::pair<std::string, std::string> kRows[] = {
        {Formatted(""), ""},
        {Formatted("%s : MUTEX", plain), "text : MUTEX"},
        {Formatted(plain), "text"},
        {Formatted("%s%s", "a", static_cast<const char*>("b")), "ab"},
        {Formatted("%d %u %02x%%", -5, 4294967295u, 10), "-5 4294967295 0a%"},
        {Formatted("%c|%c", '\0', 'x'), "\0|x"s},
        {Formatted("%7.2f", 3.14159), "   3.14"},
        {Formatted("%15d", 1), "              1"},
        {Formatted("%16d", 1), "               1"},
        {Formatted("%*s", 1000, "x"), std::string(999, ' ') + "x"},
    };
    for (const auto& [is, expected] : kRows)
        EXPECT_EQ(is, expected);
}

TEST(CString, NeedsMemoryOnlyAboveFifteenBytesAndRefusesTooMuch) {
    CString text = "kept";
    EXPECT_THROW(CString('x', INT_MAX), CMemoryException*);
    EXPECT_THROW(text.GetBuffer(INT_MAX), CMemoryException*);
    const FailingAllocation none(0, FailingAllocation::Mode::kFromThereOn);
    EXPECT_THROW(text += "twelve bytes", CMemoryException*);
    CString other = text + "eleven more";
    other.Format("%s %d", "short", 5);
    other = CString(L"wide") + text.Mid(1, 2);
    other.Insert(0, "123456789");
    EXPECT_EQ(Bytes(other), "123456789wideep");
    EXPECT_EQ(Bytes(text), "kept");
}

TEST(CString, BehavesLikeTheStandardStringThroughEveryFailure) {
    std::mt19937 random(3);
    const auto number = [&](std::size_t below) { return static_cast<int>(random() % below); };
    CString text;
    std::string model;
    int failures = 0;
    for (int step = 0; step < 60000; ++step) {
        std::string after = model;
        const std::string piece = Sample(number(30)).substr(0, random() % 20);
        const int at = number(model.size() + 1), count = number(model.size() + 1);
        const auto place = static_cast<std::size_t>(at), amount = static_cast<std::size_t>(count);
        const char* const c_text = model.c_str();
        const auto kind = model.size() > 300 ? 4 : random() % 10;
        const bool done = rv_test::Survives(random, [&] {
            if (kind == 0) text += Text(piece), after += piece;
            if (kind == 1) text += 'c', after += 'c';
            if (kind == 2) text.Insert(at, Text(piece)), after.insert(place, piece);
            if (kind == 3) text = text.Mid(at, count), after = after.substr(place, amount);
            if (kind == 4) text = Text(piece), after = piece;
            if (kind == 5) text.GetBuffer(count * 2);
            if (kind == 6) text.FreeExtra();
            if (kind == 7) text += text, after += model;
            if (kind == 8)
                text.Format("%d|%s", at, text), after = std::to_string(at) + "|" + c_text;
            if (kind == 9) text.SetString(text.GetString() + at), after = c_text + at;
        });
        if (done) model = after;
        failures += !done;
        ASSERT_EQ(Bytes(text), model) << "step " << step << ", kind " << kind;
    }
    EXPECT_GT(failures, 500);
}

}  // namespace
