// A file in memory, for what a real one cannot be made to do.
#pragma once

#include <RVUtils/CFile.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace rv_test {

// Can be short of reads, of room and of the truth.
struct MemoryFile : CFile {
    explicit MemoryFile(std::string bytes = {}) : m_Bytes(std::move(bytes)) {}

    UINT Read(void* buffer, UINT count) override {
        if (m_Before) m_Before();
        if (m_At >= m_FailsFrom) AfxThrowFileException(CFileException::hardIO);
        const std::size_t read = m_Bytes.copy(static_cast<char*>(buffer),
                                              std::min<std::size_t>(count, m_MostAtOnce), m_At);
        m_At += read;
        return static_cast<UINT>(read);
    }
    void Write(const void* buffer, UINT count) override {
        if (m_Before) m_Before();
        if (m_Bytes.size() + count > m_Room) AfxThrowFileException(CFileException::diskFull);
        m_Bytes.append(static_cast<const char*>(buffer), count);
    }
    ULONGLONG GetLength() const override {
        if (m_LengthFails) AfxThrowFileException(CFileException::hardIO);
        return m_Claimed.value_or(m_Bytes.size());
    }
    CString GetFilePath() const override { return m_Path.c_str(); }

    std::string m_Bytes;
    std::size_t m_At = 0;
    std::size_t m_MostAtOnce = SIZE_MAX;
    std::size_t m_FailsFrom = SIZE_MAX;
    std::size_t m_Room = SIZE_MAX;
    std::optional<ULONGLONG> m_Claimed;
    bool m_LengthFails = false;
    std::string m_Path;
    std::function<void()> m_Before;  // called before each read and write
};

}  // namespace rv_test
