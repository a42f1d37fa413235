// Where the bytes of a document come from, and where the bodies of its sections go.
#pragma once

#include <cstddef>
#include <cstdint>

namespace rv {

class XmlByteRules;

// Bytes that stand side by side in memory, until the source is asked for others.
struct XmlRun {
    std::size_t Size() const noexcept { return static_cast<std::size_t>(end - begin); }

    const char* begin;
    const char* end;
    bool last;  // nothing follows
};

// A document, addressed by offsets from its beginning.
class XmlSource {
public:
    XmlSource() = default;
    XmlSource(const XmlSource&) = delete;
    XmlSource& operator=(const XmlSource&) = delete;
    virtual ~XmlSource() = default;

    // The bytes from `offset` on: at least `least`, unless the document ends before. Behind its end
    // there are none. `least` is 4,096 at most.
    virtual XmlRun At(std::uint64_t offset, std::size_t least) = 0;

    // A NUL hides a section's markers up to the next multiple of this many bytes behind the place
    // where their search began; 0: up to the document's end.
    virtual std::uint64_t Window() const noexcept = 0;

    // A section may begin: its body would stand at `body`. One of the other two follows, and At
    // goes on forward until then.
    virtual void Begin_Body(std::uint64_t body) = 0;
    // It was none.
    virtual void Drop_Body() noexcept = 0;
    // It was one, up to `end`: gives `rules` the text that it stands for. False: that failed.
    virtual bool End_Body(std::uint64_t body, std::uint64_t end, XmlByteRules& rules) = 0;
};

}  // namespace rv
