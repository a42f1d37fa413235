// The checksum that tells whether an attachment came through whole.
#pragma once

#include <cstddef>
#include <cstdint>

namespace attachments {

// CRC-32 as ZIP archives and Ethernet have it, of bytes that come in pieces.
class Crc32 {
public:
    void Add(const void* bytes, std::size_t count) noexcept;
    std::uint32_t Value() const noexcept { return ~m_State; }

private:
    std::uint32_t m_State = 0xFFFFFFFF;
};

}  // namespace attachments
