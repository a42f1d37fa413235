// The items of a document, held so that a large document costs little more than its text.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "../platform/mfc/Allocation.h"

namespace rv {

// Bytes in blocks, which grow at one end: a run is open there, to which bytes are added, until it
// is closed or dropped. Closed runs stay where they are. What needs memory that is not there, or a
// run of more bytes than a CString can hold, throws CMemoryException*.
class XmlBytes {
public:
    // Where bytes stand; valid as long as the object, also while the run they belong to grows.
    struct Place {
        std::uint32_t block = 0;
        std::uint32_t offset = 0;
    };

    // Blocks are `largest_block` bytes at most, but for longer runs.
    explicit XmlBytes(std::size_t largest_block) noexcept : m_Largest_Block(largest_block) {}
    XmlBytes(const XmlBytes&) = delete;
    XmlBytes& operator=(const XmlBytes&) = delete;
    ~XmlBytes();

    // So many bytes behind any byte may be read, and behind the open run's end may be written, for
    // kernels that work in whole vectors.
    static constexpr std::size_t kSlack = 16;

    // Stands for no bytes, with its slack.
    static constexpr char kNothing[kSlack] = {};

    // Makes the first block this large, so that as many bytes fit without another.
    void Reserve(std::size_t bytes);
    // Gives back what the last block has beyond its bytes.
    void Free_Extra() noexcept;

    std::string_view Run() const noexcept {
        return {m_Run, static_cast<std::size_t>(m_End - m_Run)};
    }
    // Adds to the open run. The bytes may stand in the run itself once Drop has emptied it.
    void Append(const char* bytes, std::size_t count) {
        Make_Room(count);
        Move_Bytes(m_End, bytes, count);
        m_End += count;
    }
    // Adds the first `count` bytes, up to kSlack, of `vector`, which stores itself as a whole.
    template <class Vector>
    void Append_Vector(Vector vector, std::size_t count) {
        Make_Room(count);
        vector.Store(m_End);
        m_End += count;
    }
    // Empties the open run, except for what was shared.
    void Drop() noexcept { m_End = m_Run = m_Shared; }
    // Closes the run, of which `count` bytes from `first` on are wanted, and says where they stand.
    Place Close(std::size_t first, std::size_t count) noexcept {
        if (count == 0) {
            Drop();
            return {};
        }
        const Place place{m_Block_Index, static_cast<std::uint32_t>(
                                             static_cast<std::size_t>(m_Run - m_Block) + first)};
        m_End = m_Run = m_Shared = std::max(m_Shared, m_Run + first + count);
        return place;
    }
    // Says where the open run stands, for somebody who keeps its present bytes; it stays open.
    Place Share() noexcept;

    const char* At(Place place) const noexcept { return m_Blocks[place.block].data + place.offset; }

    // Goes through closed runs one after the other, for callers that closed each of them whole.
    class Reader {
    public:
        // The next `count` bytes, which were one run.
        const char* Peek(const XmlBytes& bytes, std::size_t count) noexcept {
            if (count == 0) return kNothing;
            if (m_Block + 1 < bytes.m_Blocks.size() && m_Offset == bytes.m_Blocks[m_Block].used) {
                ++m_Block;
                m_Offset = 0;
            }
            return bytes.m_Blocks[m_Block].data + m_Offset;
        }
        void Skip(std::size_t count) noexcept { m_Offset += count; }

    private:
        std::size_t m_Block = 0;
        std::size_t m_Offset = 0;
    };

private:
    struct Block {
        char* data;
        std::size_t size;
        std::size_t used;  // bytes of closed runs; known once another block has followed
    };

    static void Move_Bytes(char* to, const char* from, std::size_t count) noexcept;
    void Make_Room(std::size_t count) {
        if (count > static_cast<std::size_t>(m_Limit - m_End)) Grow(count);
    }
    void Use_Last_Block() noexcept;
    void Grow(std::size_t count);
    void Add_Block(std::size_t size);
    void Resize_Last(std::size_t size);

    std::vector<Block, HeapAllocator<Block>> m_Blocks;
    std::uint32_t m_Block_Index = 0;  // of the last block
    char* m_Block = nullptr;          // its beginning
    char* m_Run = nullptr;            // the open run, in it
    char* m_Shared = nullptr;         // end of what was shared of it, or its beginning
    char* m_End = nullptr;            // its end
    char* m_Limit = nullptr;          // end of the block, but for its slack
    std::size_t m_Next_Block = 4096;
    std::size_t m_Largest_Block;
};

// One element. It is open until its value is set.
struct XmlItem {
    static constexpr std::uint32_t kOpen = 0xFFFFFFFF;

    bool Is_Open() const noexcept { return value.block == kOpen; }

    XmlBytes::Place value{kOpen, 0};
    std::uint32_t value_length = 0;
    std::uint32_t child_count = 0;
    std::uint32_t name_length;
};

// The elements of a document in the order of their start tags, with a cursor.
//
// Names stand one behind the other in item order, so an item needs only its name's length; a value
// is a slice of the document's text, and elements may share one. An item's address lasts as long as
// the object.
class XmlItems {
public:
    explicit XmlItems(std::size_t largest_block) noexcept
        : names(largest_block), texts(largest_block), m_Largest_Block(largest_block) {}
    XmlItems(const XmlItems&) = delete;
    XmlItems& operator=(const XmlItems&) = delete;
    ~XmlItems();

    static void* operator new(std::size_t bytes) { return HeapObject::operator new(bytes); }
    static void operator delete(void* block) noexcept { Heap_Free(block); }

    // Adds the element whose name is the open run of `names`, and closes that run.
    XmlItem* Add() {
        if (m_Free == m_Free_End) Add_Block();
        const std::size_t length = names.Run().size();
        names.Close(0, length);
        *m_Free = XmlItem{.name_length = static_cast<std::uint32_t>(length)};
        return m_Free++;
    }

    // Puts the cursor on the first item.
    void Reset() noexcept;
    // The item at the cursor, null when there is none.
    const XmlItem* Current() const noexcept { return m_Current; }
    // The name of the item at the cursor.
    const char* Current_Name() noexcept { return m_Names.Peek(names, m_Current->name_length); }
    // Its value; only if it is not open.
    const char* Current_Value() const noexcept {
        return m_Current->value_length > 0 ? texts.At(m_Current->value) : XmlBytes::kNothing;
    }
    void Advance() noexcept {
        m_Names.Skip(m_Current->name_length);
        if (++m_Current == Used_End(m_Current_Block)) Advance_Block();
    }

    XmlBytes names;
    XmlBytes texts;

private:
    struct Block {
        XmlItem* data;
        XmlItem* end;  // end of its room
    };

    void Add_Block();
    void Advance_Block() noexcept;
    XmlItem* Used_End(std::size_t block) const noexcept {
        return block + 1 == m_Blocks.size() ? m_Free : m_Blocks[block].end;
    }

    std::vector<Block, HeapAllocator<Block>> m_Blocks;
    XmlItem* m_Free = nullptr;
    XmlItem* m_Free_End = nullptr;
    std::size_t m_Next_Block = 4096;
    std::size_t m_Largest_Block;

    const XmlItem* m_Current = nullptr;
    std::size_t m_Current_Block = 0;
    XmlBytes::Reader m_Names;
};

}  // namespace rv
