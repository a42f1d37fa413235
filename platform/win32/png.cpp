#include "png.h"

#include <array>
#include <string_view>

namespace {

using Bytes = rv::GrowingArray<std::uint8_t>;

constexpr std::string_view kSignature = "\x89PNG\r\n\x1A\n";
constexpr std::size_t kBytesOfPixel = 3;
constexpr std::uint8_t kUp = 2;  // rows are told as what changes from the row above

// How many bytes a repetition can stand for, and from which on it is worth one.
constexpr unsigned kLongest = 258;
constexpr unsigned kShortest = 3;

constexpr std::array<std::uint32_t, 256> kCrcTable = [] {
    std::array<std::uint32_t, 256> table = {};
    for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
        std::uint32_t value = byte;
        for (int bit = 0; bit < 8; ++bit)
            value = value & 1 ? 0xEDB88320 ^ value >> 1 : value >> 1;
        table[byte] = value;
    }
    return table;
}();

std::uint32_t Crc_Of(const std::uint8_t* begin, const std::uint8_t* end) noexcept {
    std::uint32_t crc = ~std::uint32_t{0};
    for (const std::uint8_t* at = begin; at != end; ++at)
        crc = kCrcTable[(crc ^ *at) & 0xFF] ^ crc >> 8;
    return ~crc;
}

// Notes that it ran out of memory, and goes on in silence.
class Writer {
public:
    explicit Writer(Bytes& bytes) noexcept : m_Bytes(bytes) {}

    bool Is_Whole() const noexcept { return m_IsWhole; }

    void Byte(std::uint8_t byte) noexcept {
        m_IsWhole = m_IsWhole && m_Bytes.Insert(m_Bytes.Size(), byte);
    }
    void Text(std::string_view text) noexcept {
        for (const char character : text)
            Byte(static_cast<std::uint8_t>(character));
    }
    void Number(std::uint32_t value) noexcept {
        for (int shift = 24; shift >= 0; shift -= 8)
            Byte(static_cast<std::uint8_t>(value >> shift));
    }

    // Bits, the lowest first.
    void Bits(std::uint32_t value, int count) noexcept {
        m_Bits |= value << m_BitCount;
        for (m_BitCount += count; m_BitCount >= 8; m_BitCount -= 8) {
            Byte(static_cast<std::uint8_t>(m_Bits));
            m_Bits >>= 8;
        }
    }
    // The bits of a code, the highest first.
    void Code(std::uint32_t value, int count) noexcept {
        while (count-- > 0)
            Bits(value >> count & 1, 1);
    }
    void Fill_Byte() noexcept {
        if (m_BitCount != 0) Bits(0, 8 - m_BitCount);
    }

    template <class Content>
    void Chunk(std::string_view kind, Content write) noexcept {
        const std::size_t start = m_Bytes.Size();
        Number(0);
        Text(kind);
        write();
        if (!m_IsWhole) return;
        const std::uint8_t* const begin = m_Bytes.begin() + start + 4;
        const auto length = static_cast<std::uint32_t>(m_Bytes.end() - begin - 4);
        for (std::size_t index = 0; index < 4; ++index)
            m_Bytes[start + index] = static_cast<std::uint8_t>(length >> (24 - 8 * index));
        Number(Crc_Of(begin, m_Bytes.end()));
    }

private:
    Bytes& m_Bytes;
    bool m_IsWhole = true;
    std::uint32_t m_Bits = 0;
    int m_BitCount = 0;
};

// One block with the fixed codes, in which runs of one byte are told as repetitions: of the rows of
// a window, most are like the row above.
class Deflater {
public:
    explicit Deflater(Writer& writer) noexcept : m_Writer(writer) {
        m_Writer.Byte(0x78);
        m_Writer.Byte(0x01);
        m_Writer.Bits(0b011, 3);
    }

    void Add(std::uint8_t byte) noexcept {
        m_Low = (m_Low + byte) % 65521;
        m_High = (m_High + m_Low) % 65521;
        if (byte == m_Byte && m_Count != 0 && m_Count != kLongest + 1) {
            ++m_Count;
            return;
        }
        Flush();
        m_Byte = byte;
        m_Count = 1;
    }

    void End() noexcept {
        Flush();
        m_Writer.Code(0, 7);
        m_Writer.Fill_Byte();
        m_Writer.Number(m_High << 16 | m_Low);
    }

private:
    // The byte itself, and how often it comes again.
    void Flush() noexcept {
        if (m_Count == 0) return;
        Literal(m_Byte);
        const unsigned more = m_Count - 1;
        if (more >= kShortest) {
            Repetition(more);
        } else {
            for (unsigned index = 0; index < more; ++index)
                Literal(m_Byte);
        }
        m_Count = 0;
    }

    void Literal(std::uint32_t byte) noexcept {
        if (byte < 144)
            m_Writer.Code(0x30 + byte, 8);
        else
            m_Writer.Code(0x190 + byte - 144, 9);
    }

    // Of the byte before. Lengths come in groups of four codes, which differ in how many bits
    // follow; the longest one has a code to itself.
    void Repetition(unsigned length) noexcept {
        unsigned code = 285;
        unsigned rest = 0;
        int extra = 0;
        if (length < kLongest) {
            const unsigned from = length - kShortest;
            while (from >> extra >= 8)
                ++extra;
            code = 257 + 4 * static_cast<unsigned>(extra) + (from >> extra);
            rest = from & ((1u << extra) - 1);
        }
        if (code < 280)
            m_Writer.Code(code - 256, 7);
        else
            m_Writer.Code(0xC0 + code - 280, 8);
        m_Writer.Bits(rest, extra);
        m_Writer.Code(0, 5);
    }

    Writer& m_Writer;
    std::uint32_t m_Low = 1;
    std::uint32_t m_High = 0;
    std::uint8_t m_Byte = 0;
    unsigned m_Count = 0;
};

std::uint8_t Part_Of(rv::Color color, std::size_t part) noexcept {
    return static_cast<std::uint8_t>(color >> (16 - 8 * part));
}

void Write_Rows(Deflater& deflater, const rv::Surface& surface) noexcept {
    for (int y = 0; y < surface.Height(); ++y) {
        const rv::Color* const row = surface.Row(y);
        const rv::Color* const above = y != 0 ? surface.Row(y - 1) : nullptr;
        deflater.Add(kUp);
        for (int x = 0; x < surface.Width(); ++x) {
            for (std::size_t part = 0; part < kBytesOfPixel; ++part) {
                const int before = above ? Part_Of(above[x], part) : 0;
                deflater.Add(static_cast<std::uint8_t>(Part_Of(row[x], part) - before));
            }
        }
    }
    deflater.End();
}

}  // namespace

bool rv::Encode_Png(const Surface& surface, GrowingArray<std::uint8_t>& file) noexcept {
    Writer writer(file);
    writer.Text(kSignature);
    writer.Chunk("IHDR", [&] {
        writer.Number(static_cast<std::uint32_t>(surface.Width()));
        writer.Number(static_cast<std::uint32_t>(surface.Height()));
        // Eight bits, colours, and the one method there is of each kind.
        writer.Text({"\x08\x02\0\0\0", 5});
    });
    writer.Chunk("IDAT", [&] {
        Deflater deflater(writer);
        Write_Rows(deflater, surface);
    });
    writer.Chunk("IEND", [] {});
    return writer.Is_Whole();
}
