// The XML reader and the Base64 file codec.
#pragma once

#include <memory>

#include "../frame/RVString.h"
#include "../frame/export.h"
#include "../platform/mfc/CFile.h"

namespace rv {
class XmlItems;
class XmlSource;
class XmlTempFile;
}  // namespace rv

// Turns a document into a flat list of its elements, in the order of their start tags.
//
// It reads a dialect, not XML at large: elements, instructions (thrown away) and CDATA sections,
// which nest. Attributes on a start tag are thrown away, on a self-closing tag they stay in the
// name. Comments, declarations and entities have no meaning. No character set is decoded; tabs and
// line breaks outside a CDATA section are dropped. A document that simply stops is accepted as it
// stands.
//
// A section ends where its nested sections leave its depth at 0; the depth is 16 bits wide, and
// where it wraps the section ends at the next closing marker. A NUL byte hides the markers behind
// it: in memory all of them, in a file those up to the next multiple of 1,048,476 bytes from where
// their search began. A section without an end is a tag that begins behind its marker and one byte
// more.
//
//     RVXmlParser parser;
//     if (parser.Load_Text(document))
//         while (parser.Next(name, value, children)) ...
//
// An object belongs to one thread at a time. Memory that cannot be had throws CMemoryException*;
// the object then holds the items up to there and can be used on.
class RVUTILS_API RVXmlParser {
public:
    RVXmlParser() noexcept;
    RVXmlParser(const RVXmlParser&) = delete;
    RVXmlParser& operator=(const RVXmlParser&) = delete;
    // Files that a load left in the temporary directory stay.
    virtual ~RVXmlParser();

    // Reads a document held in memory. `document` is not needed once it returns.
    //
    // True: it was read to its last byte, and the cursor stands on the first item. False: it was
    // refused, for a "<" inside a tag, a ">" outside of one, an empty tag, or an end tag that does
    // not match; the items up to there are kept, and Reset makes them walkable.
    // Reports code 23 when there is no memory to size the store in advance, and goes on.
    [[nodiscard]] bool Load_Text(const RVString& document);

    // Reads a document from disk and, when that succeeds, deletes the file.
    //
    // `reference` is "FILE://" and a path; the first seven bytes are cut unseen. The body of each
    // outermost CDATA section goes to a temporary file of its own, private to the user, and the
    // element's value becomes a reference to that file; whoever uses such a reference up with
    // Load_File or pBase64_Decode_File deletes the file with it, nobody else does. Memory stays at
    // one block beside the items, whatever the file's length.
    // Names of temporary files run ahead of the clock where several fall into one second.
    // True: as for Load_Text, and the file is deleted, where the system allows it. False: refused
    // as above, or code 25 was reported for a file that cannot be opened, is cut short while it is
    // read, or for a temporary file that cannot be made; the file stays. A body that cannot be
    // written whole throws CFileException*; the file stays, and nothing is left of the temporary
    // one.
    [[nodiscard]] bool Load_File(const RVString& reference);

    // Hands out the item at the cursor and moves on. False: there is none, the outputs are as they
    // were. An element that was still open at the end of the input has an empty value and leaves
    // `child_count` alone. Where there is no memory for an output, the cursor stays, and the
    // outputs may hold part of the item.
    bool Next(RVString& name, RVString& value, ULONG& child_count);

    // Puts the cursor on the first item.
    void Reset() noexcept;

protected:
    // Empties the list; the cursor stands on nothing.
    void Clear() noexcept;

private:
    friend class rv::XmlTempFile;

    // A name in the temporary directory for the present second, or the next one that this process
    // has not used. False: code 25 was reported.
    [[nodiscard]] static bool Get_Temp_Filename(RVString& name);
    // 0 and the temporary directory with its closing separator, or the system's error number.
    [[nodiscard]] static ULONG Get_Temp_Path(RVString& path);
    bool Load(rv::XmlSource& source);

    std::unique_ptr<rv::XmlItems> m_Items;  // null: no items
};

// Appends the Base64 text (RFC 4648, no line breaks) of `source`, from its current position to its
// end, to `text`, or to a file where there is no memory for that.
//
// Four times the source's length is reserved in `text` at first. Where that memory cannot be had:
// - `spill_file` not null: a file named like the source with ".dat" behind is created and stored in
//   `*spill_file`; it gets what `text` holds (which keeps it) and then the Base64 text. It is left
//   open and belongs to the caller, who closes it and deletes the object.
// - `spill_file` null: reports code 23 and goes on with the string.
// A caller that passes an open file in `*spill_file` gets the text there from the first block on,
// unless that memory cannot be had, which is so for every source of 512 MiB or more: then
// `*spill_file` is replaced, and the caller must hold the file otherwise to close it. Blocks are of
// up to 24 KiB; where each goes is decided anew. Reports code 25 where the source's length cannot
// be had, and goes on. Throws what the files throw, CMemoryException* when the string cannot grow.
// Any thread.
RVUTILS_API void pBase64_Encode_File(CFile& source, RVString& text, CFile** spill_file);

// Decodes Base64 text and writes the bytes to `target` at its current position; it stays open.
//
// `input` is the text itself, or a reference: "FILE://" (case does not matter) and the path of a
// file that holds the text. A string is decoded up to its first character outside the alphabet; in
// a file such characters are skipped. Both end at the first "=". Input that is no Base64 is no
// failure.
// A reference is used up: the file is deleted once it was decoded to its end, and `input` holds the
// text of the last chunk of up to 1,048,576 bytes that was read. A file that cannot be opened or
// read, and a target that cannot be written, throws CFileException*, and the referenced file stays.
// Reports code 23 without memory for the decoded text (goes on) or the chunk (returns), code 23 for
// a file that ends while it is read (ends; the file stays), code 28 without memory for the CFile.
RVUTILS_API void pBase64_Decode_File(CFile& target, RVString& input);
