// Carries the contents of files into Base64 text and back.
#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "XmlParser.h"
#include "XmlReport.h"
#include "base64/codec.h"

namespace {

using rv::Report_Xml_Error;
using rv::base64::Best_Codec;

// Serves both directions, for the groups that the kernels leave.
const RVString kAlphabet(rv::base64::kAlphabet);
const RVString kSpillSuffix(".dat");
constexpr char kPrefix[] = "FILE://";
constexpr int kPrefixLength = sizeof kPrefix - 1;
constexpr char kPad = '=';

constexpr unsigned int kNoMemory = 23;
constexpr unsigned int kUnexpected = 25;
constexpr unsigned int kNoObject = 28;

// Gives a text's excess memory back however the operation on it ends.
class Trimmer {
public:
    explicit Trimmer(RVString& text) noexcept : m_Text(text) {}
    Trimmer(const Trimmer&) = delete;
    Trimmer& operator=(const Trimmer&) = delete;
    ~Trimmer() { m_Text.FreeExtra(); }

private:
    RVString& m_Text;
};

// False: there is no memory for a text of `capacity` bytes.
[[nodiscard]] bool Reserve(RVString& text, ULONGLONG capacity) {
    try {
        text.GetBuffer(static_cast<int>(std::min<ULONGLONG>(capacity, INT_MAX)));
        return true;
    } catch (CMemoryException* exhausted) {
        exhausted->Delete();
        return false;
    }
}

class Encoder {
public:
    Encoder(CFile& source, RVString& text, CFile** spill_file) noexcept
        : m_Source(source), m_Text(text), m_SpillFile(spill_file) {}

    void Size_Text() {
        try {
            // A length beyond 32 bits wraps, and the text then grows as it goes.
            const ULONGLONG capacity = 4ULL * static_cast<DWORD>(m_Source.GetLength());
            if (Reserve(m_Text, capacity)) {
                m_Reserved = static_cast<std::size_t>(capacity);
                return;
            }
        } catch (CException* unexpected) {
            unexpected->Delete();
            return Report_Xml_Error(kUnexpected, __LINE__);
        } catch (...) {
            return Report_Xml_Error(kUnexpected, __LINE__);
        }
        Go_On_Without_Room();
    }

    void Encode() {
        unsigned char block[kBlock];
        std::size_t held = 0;
        while (const UINT read = m_Source.Read(block + held, static_cast<UINT>(kBlock - held))) {
            held += read;
            const std::size_t groups = held / 3;
            if (groups > 0) Send_Groups(block, groups);
            held -= 3 * groups;
            std::memmove(block, block + 3 * groups, held);
        }
        if (held > 0) Send_Rest(block[0], held == 2 ? block[1] : 0, held == 2);
    }

private:
    // Whole groups, so that nothing carries over while the reads are full ones; and small enough
    // for the stack of any thread and, with its text, for the first processor caches.
    static constexpr std::size_t kBlock = 24 * 1024;
    static constexpr int kSmallText = 4097;

    void Go_On_Without_Room() {
        if (!m_SpillFile) {
            m_Text.GetBuffer(kSmallText);
            return Report_Xml_Error(kNoMemory, __LINE__);
        }
        *m_SpillFile = new CFile(m_Source.GetFilePath() + kSpillSuffix,
                                 CFile::modeCreate | CFile::modeReadWrite);
        if (!m_Text.IsEmpty())
            (*m_SpillFile)->Write(m_Text.GetString(), static_cast<UINT>(m_Text.GetLength()));
    }

    // Asked anew for each block: the source may be the caller's own class, which can open the file
    // at any time.
    CFile* Spill_File() const noexcept { return m_SpillFile ? *m_SpillFile : nullptr; }

    void Send(const char* text, std::size_t length) {
        if (CFile* const file = Spill_File())
            file->Write(text, static_cast<UINT>(length));
        else
            m_Text.Append(text, static_cast<int>(length));
    }

    void Send_Groups(const unsigned char* bytes, std::size_t groups) {
        const auto length = static_cast<std::size_t>(m_Text.GetLength());
        const std::size_t end = length + 4 * groups;
        if (!Spill_File() && end <= m_Reserved) {
            Best_Codec().m_Encode(bytes, groups,
                                  m_Text.GetBuffer(static_cast<int>(m_Reserved)) + length);
            m_Text.ReleaseBuffer(static_cast<int>(end));
            return;
        }
        char text[kBlock / 3 * 4];
        Best_Codec().m_Encode(bytes, groups, text);
        Send(text, 4 * groups);
    }

    void Send_Rest(unsigned first, unsigned second, bool has_second) {
        const auto at = [](unsigned index) { return kAlphabet.GetAt(static_cast<int>(index)); };
        const char text[4] = {at(first >> 2), at((first & 3) << 4 | second >> 4),
                              has_second ? at((second & 15) << 2) : kPad, kPad};
        Send(text, sizeof text);
    }

    CFile& m_Source;
    RVString& m_Text;
    CFile** m_SpillFile;
    std::size_t m_Reserved = 0;
};

class Decoder {
public:
    // `skips_others`: characters outside the alphabet are passed over; else they end the text.
    // `room`: how many decoded bytes are collected before they are written, at most.
    Decoder(CFile& target, bool skips_others, int room)
        : m_Target(target), m_SkipsOthers(skips_others) {
        if (Reserve(m_Decoded, static_cast<ULONGLONG>(room))) {
            m_Room = reinterpret_cast<unsigned char*>(m_Decoded.GetBuffer(room));
            m_Size = static_cast<std::size_t>(room);
        } else {
            Report_Xml_Error(kNoMemory, __LINE__);
        }
    }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;

    // Takes the next characters. False: one of them ended the text.
    bool Take(const char* at, const char* end) {
        while (at != end) {
            if (m_Count == 0) {
                at += 4 * Take_Groups(at, static_cast<std::size_t>(end - at) / 4);
                if (at == end) break;
            }
            const char character = *at++;
            const int index = kAlphabet.Find(character);
            if (index >= 0)
                Add(static_cast<std::uint32_t>(index));
            else if (character == kPad || !m_SkipsOthers)
                return false;
        }
        return true;
    }

    // Decodes the group that the text broke off in. One character alone gives nothing.
    void Finish() {
        if (m_Count == 0) return;
        m_Group <<= 6 * (4 - m_Count);
        Put(m_Count - 1);
    }

    void Flush() {
        if (m_Used == 0) return;
        m_Target.Write(m_Room, static_cast<UINT>(m_Used));
        m_Used = 0;
    }

private:
    std::size_t Take_Groups(const char* text, std::size_t groups) {
        std::size_t taken = 0;
        while (taken < groups) {
            Make_Room(3);
            const std::size_t wanted = std::min(groups - taken, (m_Size - m_Used) / 3);
            const std::size_t decoded =
                Best_Codec().m_Decode(text + 4 * taken, wanted, m_Room + m_Used);
            taken += decoded;
            m_Used += 3 * decoded;
            if (decoded < wanted) break;
        }
        return taken;
    }

    void Add(std::uint32_t index) {
        m_Group = m_Group << 6 | index;
        if (++m_Count < 4) return;
        Put(3);
        m_Count = 0;
    }

    void Put(std::size_t count) {
        Make_Room(count);
        for (std::size_t i = 0; i < count; ++i)
            m_Room[m_Used++] = static_cast<unsigned char>(m_Group >> (16 - 8 * i));
    }

    void Make_Room(std::size_t count) {
        if (m_Size - m_Used < count) Flush();
    }

    CFile& m_Target;
    const bool m_SkipsOthers;
    std::uint32_t m_Group = 0;  // its lower 24 bits: 6 for each character so far
    std::uint32_t m_Count = 0;
    RVString m_Decoded;
    unsigned char m_Spare[1024];  // the room where there is no memory for a larger one
    unsigned char* m_Room = m_Spare;
    std::size_t m_Size = sizeof m_Spare;
    std::size_t m_Used = 0;
};

void Decode_Text(CFile& target, const RVString& input) {
    Decoder decoder(target, false, input.GetLength());
    decoder.Take(input.GetString(), input.GetString() + input.GetLength());
    decoder.Finish();
    decoder.Flush();
}

// The file is read in chunks of up to `kChunk` bytes, each of which begins `kStride` behind the one
// before: the text that the caller's string is left with shows it.
constexpr UINT kChunk = 1'048'576;
constexpr UINT kStride = 1'048'567;

// What one chunk decodes to, so that each is written in one piece.
constexpr int kRoom = kChunk / 4 * 3;

// Ends a text at its first NUL, however the operation that wrote into its room ends. Looked for
// once, not for each chunk.
class TextEnd {
public:
    explicit TextEnd(RVString& text) noexcept : m_Text(text) {}
    TextEnd(const TextEnd&) = delete;
    TextEnd& operator=(const TextEnd&) = delete;
    ~TextEnd() { m_Text.ReleaseBuffer(); }

private:
    RVString& m_Text;
};

// Reads the next chunk into the room of `text`, which becomes the chunk. At the file's end `text`
// stays as it is.
UINT Read_Chunk(CFile& source, RVString& text) {
    const UINT read = source.Read(text.GetBuffer(kChunk), kChunk);
    if (read > 0) text.ReleaseBuffer(static_cast<int>(read));
    return read;
}

// Decodes a file of text in the room of `chunk`, whose first `read` bytes are there. False: the
// file ended before its length.
[[nodiscard]] bool Decode_Chunks(CFile& target, CFile& source, ULONGLONG length, RVString& chunk,
                                 UINT read) {
    Decoder decoder(target, true, static_cast<int>(std::min<ULONGLONG>(length, kRoom)));
    for (ULONGLONG base = 0; length > 0;) {
        const char* const text = chunk.GetString();
        const UINT stride = static_cast<UINT>(std::min<ULONGLONG>(length, kStride));
        // A file that shrinks has less than that, and nothing stands for the rest.
        if (!decoder.Take(text, text + std::min(stride, read))) break;
        length -= stride;
        // A pad that would begin the next chunk is seen before that chunk is read.
        if (length == 0 || (read > kStride && text[kStride] == kPad)) break;

        decoder.Flush();
        base += stride;
        source.Seek(static_cast<LONGLONG>(base), CFile::begin);
        read = Read_Chunk(source, chunk);
        if (read == 0) return false;
    }
    decoder.Finish();
    decoder.Flush();
    return true;
}

void Decode_Reference(CFile& target, RVString& input) {
    std::unique_ptr<CFile> source(new (std::nothrow)
                                      CFile(input.GetString() + kPrefixLength, CFile::modeRead));
    if (!source) return Report_Xml_Error(kNoObject, __LINE__);
    RVString chunk;
    if (!Reserve(chunk, kChunk)) return Report_Xml_Error(kNoMemory, __LINE__);
    const ULONGLONG length = source->GetLength();
    const UINT read = Read_Chunk(*source, chunk);

    // From here on the caller's string is the chunk, so that its text is never copied.
    const RVString reference = std::exchange(input, std::move(chunk));
    const Trimmer trimmer(input);
    const TextEnd text_end(input);
    if (!Decode_Chunks(target, *source, length, input, read))
        return Report_Xml_Error(kNoMemory, __LINE__);
    source->Close();
    source.reset();
    DeleteFileA(reference.GetString() + kPrefixLength);
}

}  // namespace

void pBase64_Encode_File(CFile& source, RVString& text, CFile** spill_file) {
    const Trimmer trimmer(text);
    Encoder encoder(source, text, spill_file);
    encoder.Size_Text();
    encoder.Encode();
}

void pBase64_Decode_File(CFile& target, RVString& input) {
    if (input.Left(kPrefixLength).CompareNoCase(kPrefix) == 0)
        Decode_Reference(target, input);
    else
        Decode_Text(target, input);
}
