// A program of somebody else's: it goes the main road with nothing but the public headers.

#include <RVUtils/RVUtils.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

int g_Failures = 0;

void Check(bool holds, const char* what) {
    if (holds) return;
    std::printf("does not hold: %s\n", what);
    ++g_Failures;
}

const std::string kContent("attached\0bytes\n\xFF", 16);

void Write_Attachment(const char* path) {
    CFile file(path, CFile::modeCreate | CFile::modeWrite);
    file.Write(kContent.data(), static_cast<UINT>(kContent.size()));
}

RVString Document_With(const char* path) {
    CFile file(path, CFile::modeRead);
    RVString text("<doc><note>hello</note><file><![CDATA[");
    pBase64_Encode_File(file, text, nullptr);
    text += "]]></file></doc>";
    return text;
}

void Save(const RVString& text, const char* path) {
    CFile file(path, CFile::modeCreate | CFile::modeWrite);
    file.Write(text.GetString(), static_cast<UINT>(text.GetLength()));
}

std::string Decoded(RVString& reference, const char* path) {
    CFile file(path, CFile::modeCreate | CFile::modeReadWrite);
    pBase64_Decode_File(file, reference);
    file.Seek(0, CFile::begin);
    char bytes[64];
    return {bytes, file.Read(bytes, sizeof bytes)};
}

void Walk(RVXmlParser& parser, const char* path) {
    RVString name;
    RVString value;
    ULONG children = 0;
    Check(parser.Next(name, value, children) && name == "doc" && children == 2, "the root");
    Check(parser.Next(name, value, children) && name == "note" && value == "hello", "the note");
    Check(parser.Next(name, value, children) && name == "file", "the attachment's element");
    Check(Decoded(value, path) == kContent, "the attachment's bytes");
    Check(!parser.Next(name, value, children), "the end");
}

void Go() {
    const char* const attachment = "consumer_attachment.bin";
    const char* const document = "consumer_document.xml";
    Write_Attachment(attachment);
    Save(Document_With(attachment), document);
    RVXmlParser parser;
    Check(parser.Load_File(RVString("FILE://") + document), "Load_File");
    Check(!CFile().Open(document, CFile::modeRead), "the document is used up");
    Walk(parser, attachment);
    DeleteFileA(attachment);
}

}  // namespace

int main() {
    try {
        Go();
    } catch (CException* exception) {
        exception->Delete();
        Check(false, "no exception");
    }
    std::printf("%s\n", g_Failures == 0 ? "passed" : "failed");
    return g_Failures == 0 ? 0 : 1;
}
