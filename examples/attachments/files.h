// Files that count what passes, and that never leave anything half-written behind.
#pragma once

#include <RVUtils/CFile.h>

#include <cstdint>
#include <string>

#include "crc32.h"
#include "progress.h"

namespace attachments {

// What passed through a file.
struct Passed {
    std::uint64_t bytes = 0;
    Crc32 crc;
};

// A file that is read from its first byte to its last, one block at a time: Read tells the end at
// the end of each block, so what is made of a block never grows with the file.
//
// What cannot be read throws Failure, under the name that the user knows.
class SourceFile : public CFile {
public:
    // `path` is for the library's file operations, `shown` is the name that the user knows.
    SourceFile(const std::string& path, std::string shown, Progress& progress);

    // Moves to the next block. False: the whole file has been read.
    [[nodiscard]] bool Next_Block();
    UINT Read(void* buffer, UINT count) override;
    // How much of the block is left, at most.
    ULONGLONG GetLength() const override;
    const Passed& Seen() const { return m_Seen; }

private:
    // A multiple of three, so that no padding stands inside of a text made of several blocks.
    static constexpr std::uint64_t kBlock = 768 * 1024;

    std::string m_Shown;
    Progress& m_Progress;
    std::uint64_t m_Length;
    std::uint64_t m_Block_End = 0;
    bool m_At_End = false;
    Passed m_Seen;
};

// A file that is made here and nowhere else: its name must be free, and it goes again unless Keep
// is called.
//
// What cannot be written throws Failure, under the name that the user knows.
class NewFile : public CFile {
public:
    enum class Purpose { kForUser, kTemporary };

    // `progress` is told of what is written; null where something else tells it of the same bytes.
    NewFile(const std::string& path, Progress* progress, Purpose purpose = Purpose::kForUser);
    ~NewFile() override;

    void Write(const void* buffer, UINT count) override;
    void Write(const std::string& text) { Write(text.data(), static_cast<UINT>(text.size())); }
    // Closes the file and lets it stand.
    void Keep();
    const Passed& Seen() const { return m_Seen; }

private:
    std::string m_Path;
    Progress* m_Progress;
    Passed m_Seen;
    bool m_Kept = false;
};

// The length of a file, for an estimate of the work. Throws Failure unless it is a file that can be
// read.
[[nodiscard]] std::uint64_t Length_Of(const std::string& path);

// Copies all of `source` to `target`.
void Copy(SourceFile& source, CFile& target);

}  // namespace attachments
