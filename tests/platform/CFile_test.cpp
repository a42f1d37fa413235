// The file class, on every platform, and through it the system's files.
#include <RVUtils/CFile.h>
#include <gtest/gtest.h>

#include "allocation_sweep.h"
#include "file_support.h"
#include "scratch.h"

namespace {

using rv_test::Catch;
using rv_test::Read;
using rv_test::Read_File;
using rv_test::Thrown;

constexpr UINT kKeep = CFile::modeCreate | CFile::modeNoTruncate;
constexpr int kNone = -1;

TEST(CFile, FlagsSayWhatIsMadeAndWhatIsGranted) {
    constexpr struct {
        const char* why;
        UINT flags;
        bool exists;
        int open_cause;
        int write_cause;
        const char* content;  // with "new" written over its beginning
    } kRows[] = {
        {"read, none", CFile::modeRead, false, CFileException::fileNotFound, kNone, "(none)"},
        {"read, there", CFile::modeRead, true, kNone, CFileException::accessDenied, "old text"},
        {"write, there", CFile::modeWrite, true, kNone, kNone, "new text"},
        {"both, there", CFile::modeReadWrite, true, kNone, kNone, "new text"},
        {"create, none", CFile::modeCreate | CFile::modeWrite, false, kNone, kNone, "new"},
        {"create, there", CFile::modeCreate | CFile::modeReadWrite, true, kNone, kNone, "new"},
        {"keep, none", kKeep | CFile::modeWrite, false, kNone, kNone, "new"},
        {"keep, there", kKeep | CFile::modeWrite, true, kNone, kNone, "new text"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const rv_test::ScratchDirectory scratch;
        const std::string path = scratch / "file";
        if (row.exists) rv_test::Write_File(path, "old text");
        CFile file;
        CFileException error(kNone);
        const bool opened = file.Open(path.c_str(), row.flags, &error);
        EXPECT_EQ(opened, row.open_cause == kNone);
        EXPECT_EQ(error.m_cause, row.open_cause);
        const Thrown thrown = Catch([&] { opened ? file.Write("new", 3) : void(); });
        EXPECT_EQ(thrown.cause, row.write_cause);
        file.Close();
        EXPECT_EQ(Read_File(path), row.content);
    }
}

TEST(CFile, ARefusalTellsCauseNumberAndPath) {
    const rv_test::ScratchDirectory scratch;
    rv_test::Write_File(scratch / "file", "");
    const struct {
        std::string path;
        int cause;
        DWORD os_error;
    } rows[] = {
        {scratch / "none", CFileException::fileNotFound, ERROR_FILE_NOT_FOUND},
        {scratch / "none/none/file", CFileException::badPath, ERROR_PATH_NOT_FOUND},
        {scratch / "file/file", CFileException::badPath, ERROR_PATH_NOT_FOUND},
        {scratch.Path().string(), CFileException::accessDenied, ERROR_ACCESS_DENIED},
        {"", CFileException::badPath, ERROR_PATH_NOT_FOUND},
    };
    for (const auto& row : rows) {
        const char* const path = row.path.c_str();
        CFileException error;
        EXPECT_FALSE(CFile().Open(path, CFile::modeRead, &error)) << path;
        EXPECT_EQ(error.m_strFileName, path);
        const Thrown thrown = Catch([&] { CFile file(path, CFile::modeRead); });
        EXPECT_EQ(thrown.cause, row.cause) << path;
        EXPECT_EQ(thrown.os_error, row.os_error) << path;
        EXPECT_EQ(thrown.path, path);
        EXPECT_FALSE(DeleteFileA(path));
        EXPECT_EQ(GetLastError(), row.os_error) << path;
    }
}

TEST(CFile, PositionsAndLengths) {
    const rv_test::ScratchDirectory scratch;
    CFile file((scratch / "file").c_str(), CFile::modeCreate | CFile::modeReadWrite);
    file.Write("0123456789", 10);
    constexpr struct {
        const char* why;
        LONGLONG offset;
        UINT from;
        ULONGLONG expected;  // the position afterwards
        int cause;
        const char* rest;
    } kRows[] = {
        {"from the beginning", 3, CFile::begin, 3, kNone, "3456789"},
        {"back from the end", -4, CFile::end, 6, kNone, "6789"},
        {"back from the position", -3, CFile::current, 7, kNone, "789"},
        {"the first byte", -10, CFile::current, 0, kNone, "0123456789"},
        {"before the first", -11, CFile::end, 10, CFileException::badSeek, ""},
        {"beyond 32 bits", 5000000000, CFile::begin, 5000000000, kNone, ""},
        {"no such origin", 0, 3, 5000000000, CFileException::genericException, ""},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(Catch([&] { file.Seek(row.offset, row.from); }).cause, row.cause) << row.why;
        EXPECT_EQ(file.GetPosition(), row.expected) << row.why;
        EXPECT_EQ(Read(file), row.rest) << row.why;
    }
    EXPECT_EQ(file.Seek(2, CFile::end), 12u);
    file.Write("x", 1);
    EXPECT_EQ(file.GetLength(), 13u);
    file.Seek(8, CFile::begin);
    EXPECT_EQ(Read(file, 4), std::string("89\0\0", 4)) << "zeros between";
}

TEST(CFile, BelongsToItsObjectUntilClosed) {
    const rv_test::ScratchDirectory scratch;
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(scratch.Path());
    const std::string path = (std::filesystem::current_path() / "file").string();
    {
        CFile file("file", CFile::modeCreate | CFile::modeWrite);
        std::filesystem::current_path(before);
        EXPECT_EQ(file.GetFilePath(), path.c_str());
        CFile unclosable(HANDLE{});
        SetLastError(1234);
    }
    EXPECT_EQ(GetLastError(), 1234u) << "a destructor keeps the number of the failure before";

    CFile owner(rv_test::Open(path, OPEN_EXISTING, GENERIC_READ));
    EXPECT_EQ(Read(owner), "");
    owner.Close();
    owner.Close();
    EXPECT_EQ(Catch([&] { Read(owner); }).os_error, DWORD{ERROR_INVALID_HANDLE});
    EXPECT_TRUE(owner.Open(path.c_str(), CFile::modeRead)) << "free for another file";
    owner.Abort();
    EXPECT_TRUE(DeleteFileA(path.c_str()));
}

TEST(CFile, AnExhaustedHeapLeavesTheFileUntouched) {
    const rv_test::ScratchDirectory scratch;
    const std::string path = scratch / "a name that has no place inside a string";
    const std::string dotted = scratch / "./a name that has no place inside a string";
    using Mode = rv_test::FailingAllocation::Mode;
    for (const Mode mode : {Mode::kOnce, Mode::kFromThereOn}) {
        const auto open = [&] {
            rv_test::Write_File(path, "old");
            CFileException error(kNone, 0);
            CFile reader;
            const BOOL opened = reader.Open(dotted.c_str(), CFile::modeRead, &error);
            Catch([&] { EXPECT_EQ(reader.GetFilePath(), opened ? path.c_str() : ""); });
            reader.Abort();
            EXPECT_EQ(error.m_lOsError, opened ? 0 : LONG{ERROR_NOT_ENOUGH_MEMORY});
            const Thrown thrown =
                Catch([&] { CFile file(path.c_str(), CFile::modeCreate | CFile::modeWrite); });
            EXPECT_EQ(Read_File(path), thrown.is_memory ? "old" : "");
            const bool refused = !opened || thrown.is_memory;
            EXPECT_TRUE(rv_test::FailingAllocation::Failed() || !refused);
        };
        EXPECT_GT(rv_test::Sweep_Allocations(open, mode), 1);
    }
    const auto fail = [] {
        const Thrown thrown =
            Catch([] { AfxThrowFileException(CFileException::hardIO, 7, "a path of 20 bytes"); });
        EXPECT_EQ(thrown.is_memory, rv_test::FailingAllocation::Failed());
    };
    EXPECT_EQ(rv_test::Sweep_Allocations(fail), 2) << "the exception and its path";
}

}  // namespace
