#include "crc32.h"

#include <array>

namespace attachments {
namespace {

// Table k takes a byte that k further bytes follow, so that eight bytes are worked in one step.
constexpr std::size_t kTables = 8;
using Tables = std::array<std::array<std::uint32_t, 256>, kTables>;

constexpr Tables Make_Tables() {
    Tables tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t value = byte;
        for (int bit = 0; bit < 8; ++bit)
            value = (value >> 1) ^ ((value & 1) ? 0xEDB88320U : 0);
        tables[0][byte] = value;
    }
    for (std::size_t table = 1; table < kTables; ++table)
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint32_t value = tables[table - 1][byte];
            tables[table][byte] = (value >> 8) ^ tables[0][value & 0xFF];
        }
    return tables;
}

constexpr Tables kTable = Make_Tables();

std::uint32_t Add_Eight(std::uint32_t state, const unsigned char* bytes) noexcept {
    return kTable[7][(state & 0xFF) ^ bytes[0]] ^ kTable[6][((state >> 8) & 0xFF) ^ bytes[1]] ^
           kTable[5][((state >> 16) & 0xFF) ^ bytes[2]] ^ kTable[4][(state >> 24) ^ bytes[3]] ^
           kTable[3][bytes[4]] ^ kTable[2][bytes[5]] ^ kTable[1][bytes[6]] ^ kTable[0][bytes[7]];
}

}  // namespace

void Crc32::Add(const void* bytes, std::size_t count) noexcept {
    auto next = static_cast<const unsigned char*>(bytes);
    for (; count >= 8; count -= 8, next += 8)
        m_State = Add_Eight(m_State, next);
    for (; count > 0; --count, ++next)
        m_State = (m_State >> 8) ^ kTable[0][(m_State ^ *next) & 0xFF];
}

}  // namespace attachments
