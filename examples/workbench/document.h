// The document that the window shows: an element "Equipment" with a "Tag", and of each attachment
// its "Name", "Kind" (see items.h), "Date" as a database text, and "Content" in Base64.
#pragma once

#include <RVUtils/RVUtils.h>

#include <vector>

namespace workbench {

struct Attachment {
    RVString name;
    ULONG kind = 0;
    RVDateTime date;
    int size = 0;  // bytes
};

struct Document {
    RVString tag;
    std::vector<Attachment> attachments;
};

// Reads the file at `path`. False for one that cannot be read, or is no document.
[[nodiscard]] bool Read_Document(const char* path, Document& document);

}  // namespace workbench
