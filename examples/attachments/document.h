// Documents that carry files.
//
//     <?xml version="1.0"?>
//     <attachments>
//     <attachment><name>photo.png</name><content><![CDATA[iVBORw0...]]></content>
//     <size>70</size><crc32>1f2e3d4c</crc32></attachment>
//     <attachment><name>inner.xml</name><document><![CDATA[<?xml ...]]></document>
//     <size>403</size><crc32>9a8b7c6d</crc32></attachment>
//     </attachments>
//
// A content is Base64 text, a document stands there as it is. Size and checksum are those of the
// file. Names are element text, escaped, since a start tag's attributes are lost on the reader.
#pragma once

#include <RVUtils/XmlParser.h>

#include <cstdint>
#include <string>
#include <vector>

#include "failure.h"
#include "files.h"
#include "progress.h"
#include "work_folder.h"

namespace attachments {

// What every such document begins with; how one is recognised.
inline constexpr char kHead[] = "<?xml version=\"1.0\"?>\n<attachments>\n";
inline constexpr char kTail[] = "</attachments>\n";

// Documents within documents are followed so far down.
inline constexpr int kDeepest = 32;

struct Attachment {
    std::string name;
    bool is_document = false;
    RVString body;  // a reference into the work folder
    std::uint64_t size = 0;
    std::uint32_t crc = 0;
};

// What loading takes. All of it outlives the load.
struct Loading {
    WorkFolder& work;
    Progress& progress;
};

// Reads the user's document at `path`, which stays: a copy is loaded.
void Load_Copy(RVXmlParser& parser, const std::string& path, Loading loading);

// Reads a document from the body of an attachment, which is used up. `shown` names it in messages,
// `level` is how many documents it is in.
void Load_Body(RVXmlParser& parser, const Attachment& attachment, const std::string& shown,
               int level, Loading loading);

// The attachments of the loaded document.
[[nodiscard]] std::vector<Attachment> Read_Attachments(RVXmlParser& parser,
                                                       const std::string& shown,
                                                       const WorkFolder& work);

// Whether the loaded document is one of those that carry files.
[[nodiscard]] bool Carries_Files(RVXmlParser& parser);

// How many bytes of text or document an attachment of this size has in a document.
[[nodiscard]] std::uint64_t Body_Length(const Attachment& attachment);

// Whether the body has the length that the attachment's size asks for.
[[nodiscard]] bool Is_Whole(const Attachment& attachment);

// Deletes a body that nobody is going to use up.
void Discard(const Attachment& attachment);

// A document that is not what it should be.
[[nodiscard]] Failure Damaged(const std::string& shown, const std::string& why);

}  // namespace attachments
