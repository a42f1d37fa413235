// What the file class does not show of files and paths, on every platform.
#include <RVUtils/paths.h>
#include <gtest/gtest.h>

#include "file_support.h"
#include "scratch.h"

namespace {

TEST(File, NewOnesAreNewAndHandlesGrantWhatWasAsked) {
    const rv_test::ScratchDirectory scratch;
    const std::string path = scratch / "file";
    EXPECT_TRUE(CloseHandle(rv_test::Open(path, CREATE_NEW, GENERIC_WRITE)));
    rv_test::Write_File(path, "text");
    EXPECT_EQ(rv_test::Open(path, CREATE_NEW, GENERIC_WRITE), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_EXISTS});
    EXPECT_EQ(rv_test::Read_File(path), "text");
    EXPECT_TRUE(CloseHandle(rv_test::Open(path, TRUNCATE_EXISTING, GENERIC_WRITE)));
    EXPECT_EQ(rv_test::Read_File(path), "");
    CFile writer((scratch / "file").c_str(), CFile::modeWrite);
    EXPECT_EQ(rv_test::Catch([&] { rv_test::Read(writer); }).os_error, DWORD{ERROR_ACCESS_DENIED});
    EXPECT_FALSE(CloseHandle(nullptr));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

// Asks with every room around the length that the answer has.
template <class Ask>
std::string Sweep_Rooms(Ask ask) {
    const DWORD needed = ask(0, nullptr);
    std::string text;
    for (DWORD room = 0; room <= needed + 1; ++room) {
        text.assign(needed + 2, '#');
        EXPECT_EQ(ask(room, text.data()), room < needed ? needed : needed - 1) << room;
        EXPECT_EQ(text[room], '#') << "written behind the room";
    }
    EXPECT_EQ(text[needed - 1], '\0');
    return text.substr(0, needed - 1);
}

TEST(Path, AnswersFitTheRoomOrTellIt) {
    const std::string directory =
        Sweep_Rooms([](DWORD room, char* buffer) { return GetTempPathA(room, buffer); });
    EXPECT_EQ(directory.back(), rv::kPathSeparator);
    EXPECT_TRUE(std::filesystem::is_directory(directory));

    char* name = nullptr;
    const std::string full = Sweep_Rooms([&](DWORD room, char* buffer) {
        const DWORD length = GetFullPathNameA("level\\.\\\\name", room, buffer, &name);
        EXPECT_TRUE(length > room || name == buffer + length - 4);
        return length;
    });
    EXPECT_EQ(full, (std::filesystem::current_path() / "level" / "name").string());
    char buffer[MAX_PATH];
    EXPECT_NE(GetFullPathNameA("level/", MAX_PATH, buffer, &name), 0u);
    EXPECT_EQ(name, nullptr);
    EXPECT_EQ(GetFullPathNameA("", MAX_PATH, buffer, nullptr), 0u);
}

}  // namespace
