#include "xml_documents.h"

#include <random>
#include <string>
#include <string_view>

namespace rv_bench {
namespace {

constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

class Writer {
public:
    Writer(Document& document, std::size_t bytes, bool indented = false)
        : m_Document(document), m_Indented(indented) {
        m_Text.reserve(bytes + 1024);
    }

    std::size_t Length() const { return m_Text.size(); }
    void Put(std::string_view text) { m_Text += text; }

    void Open(std::string_view name, int level) {
        Indent(level);
        m_Text += '<';
        m_Text += name;
        m_Text += '>';
        ++m_Document.counts.elements;
        m_Document.counts.name_bytes += name.size();
    }
    void Close(std::string_view name) {
        m_Text += "</";
        m_Text += name;
        m_Text += '>';
    }
    void Close(std::string_view name, int level) {
        Indent(level);
        Close(name);
    }
    void Leaf(std::string_view name, std::string_view value, int level) {
        Open(name, level);
        m_Text += value;
        m_Document.counts.value_bytes += value.size();
        Close(name);
    }
    void Finish() { m_Document.text.SetString(m_Text.data(), static_cast<int>(m_Text.size())); }

private:
    void Indent(int level) {
        if (!m_Indented) return;
        m_Text += '\n';
        m_Text.append(static_cast<std::size_t>(2 * level), ' ');
    }

    Document& m_Document;
    bool m_Indented;
    std::string m_Text;
};

std::string Random_Text(std::mt19937& random, std::size_t length) {
    std::string text(length, '\0');
    for (char& character : text)
        character = kAlphabet[random() % kAlphabet.size()];
    return text;
}

}  // namespace

Document Make_Small_Elements(std::size_t bytes, bool indented) {
    Document document;
    Writer writer(document, bytes, indented);
    std::mt19937 random(1);
    writer.Open("records", 0);
    while (writer.Length() < bytes) {
        writer.Open("record", 1);
        writer.Leaf("id", std::to_string(random() % 1'000'000), 2);
        writer.Leaf("name", Random_Text(random, 4 + random() % 12), 2);
        writer.Leaf("quantity", std::to_string(random() % 1000), 2);
        writer.Leaf("note", Random_Text(random, 8 + random() % 24), 2);
        writer.Close("record", 1);
    }
    writer.Close("records", 0);
    writer.Finish();
    return document;
}

Document Make_Sections(std::size_t count, std::size_t length) {
    Document document;
    Writer writer(document, count * (length + 32));
    std::mt19937 random(2);
    const std::string body = Random_Text(random, length);
    writer.Open("parts", 0);
    for (std::size_t part = 0; part < count; ++part) {
        writer.Open("part", 1);
        writer.Put("<![CDATA[");
        writer.Put(body);
        writer.Put("]]>");
        writer.Close("part");
        document.counts.value_bytes += length;
    }
    writer.Close("parts");
    writer.Finish();
    return document;
}

Document Make_Nested_Sections(std::size_t depth) {
    Document document;
    Writer writer(document, depth * 12);
    writer.Open("a", 0);
    for (std::size_t level = 0; level < depth; ++level)
        writer.Put("<![CDATA[");
    for (std::size_t level = 0; level < depth; ++level)
        writer.Put("]]>");
    writer.Close("a");
    writer.Finish();
    document.counts.value_bytes = 12 * (depth - 1);
    return document;
}

Document Make_Nested_Elements(std::size_t depth) {
    Document document;
    Writer writer(document, depth * 7);
    for (std::size_t level = 0; level < depth; ++level)
        writer.Open("a", 0);
    for (std::size_t level = 0; level < depth; ++level)
        writer.Close("a");
    writer.Finish();
    return document;
}

}  // namespace rv_bench
