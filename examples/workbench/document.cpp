#include "document.h"

#include <cstdlib>

namespace {

bool Read_File(const char* path, RVString& text) {
    CFile file;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyWrite)) return false;
    const auto length = static_cast<int>(file.GetLength());
    char* const buffer = text.GetBuffer(length);
    text.ReleaseBuffer(static_cast<int>(file.Read(buffer, static_cast<UINT>(length))));
    return true;
}

// Four characters stand for three bytes, less one for each "=" at the end.
int Decoded_Size(const RVString& base64) {
    const int length = base64.GetLength();
    int padding = 0;
    while (padding < 2 && padding < length && base64[length - 1 - padding] == '=')
        ++padding;
    return length / 4 * 3 - padding;
}

void Take_Element(const RVString& name, RVString& value, workbench::Document& document) {
    if (name == "Tag") document.tag = value;
    if (name == "Attachment") document.attachments.emplace_back();
    if (document.attachments.empty()) return;
    workbench::Attachment& attachment = document.attachments.back();
    if (name == "Name") attachment.name = value;
    if (name == "Kind") attachment.kind = static_cast<ULONG>(std::atoi(value));
    if (name == "Date") attachment.date = RVDateTime(value);
    if (name == "Content") attachment.size = Decoded_Size(value);
}

}  // namespace

bool workbench::Read_Document(const char* path, Document& document) {
    RVString text;
    RVXmlParser parser;
    if (!Read_File(path, text) || !parser.Load_Text(text)) return false;
    RVString name, value;
    ULONG children;
    while (parser.Next(name, value, children))
        Take_Element(name, value, document);
    return !document.attachments.empty();
}
