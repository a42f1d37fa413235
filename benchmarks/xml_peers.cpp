#include "xml_peers.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#if defined(BENCH_WITH_PUGIXML)
#include <pugixml.hpp>
#endif
#if defined(BENCH_WITH_RAPIDXML)
#include <rapidxml/rapidxml.hpp>
#endif
#if defined(BENCH_WITH_LIBXML2)
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#endif
#if defined(BENCH_WITH_EXPAT)
#include <expat.h>
#endif

namespace rv_bench {
namespace {

template <class Function>
double Seconds(Function function) {
    const auto start = std::chrono::steady_clock::now();
    function();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The walk of readers that hold a tree.
class Walker {
public:
    void Take(const char* name, std::size_t name_length, const char* value,
              std::size_t value_length) {
        m_Name.assign(name, name_length);
        m_Value.assign(value, value_length);
        ++m_Counts.elements;
        m_Counts.name_bytes += m_Name.size();
        m_Counts.value_bytes += m_Value.size();
    }
    const Counts& Seen() const { return m_Counts; }

private:
    std::string m_Name;
    std::string m_Value;
    Counts m_Counts;
};

// The walk of readers that call back: a value is complete when its element ends.
class Events {
public:
    void Start(const char* name, std::size_t length) {
        m_Name.assign(name, length);
        m_Value.clear();
        ++m_Counts.elements;
        m_Counts.name_bytes += length;
        m_In_Leaf = true;
    }
    void Text(const char* text, std::size_t length) {
        // Indentation between elements is nobody's value.
        if (m_In_Leaf) m_Value.append(text, length);
    }
    void End() {
        if (m_In_Leaf) m_Counts.value_bytes += m_Value.size();
        m_In_Leaf = false;
    }
    const Counts& Seen() const { return m_Counts; }

private:
    std::string m_Name;
    std::string m_Value;
    bool m_In_Leaf = false;
    Counts m_Counts;
};

constexpr std::size_t kRead = 1 << 20;

// Hands the file to `feed` in reads of 1 MiB; `feed` says whether it wants more.
template <class Feed>
void Read_In_Blocks(const std::string& path, Feed feed) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                               &std::fclose);
    if (!file) return;
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    std::vector<char> block(kRead);
    while (const std::size_t count = std::fread(block.data(), 1, kRead, file.get()))
        if (!feed(block.data(), static_cast<int>(count))) return;
}

}  // namespace

#if defined(BENCH_WITH_PUGIXML)
namespace {

// No entities, no line ends to translate: as little work as the dialect asks for.
constexpr unsigned kPugixmlOptions = pugi::parse_minimal | pugi::parse_cdata;

void Walk(const pugi::xml_node& node, Walker& walker) {
    for (const pugi::xml_node child : node.children()) {
        if (child.type() != pugi::node_element) continue;
        const char* const value = child.child_value();
        walker.Take(child.name(), std::strlen(child.name()), value, std::strlen(value));
        Walk(child, walker);
    }
}

bool Load(pugi::xml_document& document, const RVString& text) {
    return document.load_buffer(text.GetString(), static_cast<std::size_t>(text.GetLength()),
                                kPugixmlOptions, pugi::encoding_utf8);
}

Worked Walk_With_Pugixml(const RVString& text) {
    pugi::xml_document document;
    Walker walker;
    const double seconds = Seconds([&] {
        if (Load(document, text)) Walk(document, walker);
    });
    return {seconds, walker.Seen()};
}

Worked Load_With_Pugixml(const RVString& text) {
    pugi::xml_document document;
    return {Seconds([&] { (void)Load(document, text); }), std::nullopt};
}

}  // namespace

const Work kPugixml_Walk = Walk_With_Pugixml;
const Work kPugixml_Load = Load_With_Pugixml;
#else
const Work kPugixml_Walk = nullptr;
const Work kPugixml_Load = nullptr;
#endif

#if defined(BENCH_WITH_RAPIDXML)
namespace {

void Walk(const rapidxml::xml_node<>* node, Walker& walker) {
    for (auto child = node->first_node(); child; child = child->next_sibling()) {
        if (child->type() != rapidxml::node_element) continue;
        // A section is a node of its own below the element.
        const rapidxml::xml_node<>* const first = child->first_node();
        const bool section = first && first->type() == rapidxml::node_cdata;
        const rapidxml::xml_base<>* const holder = section ? first : child;
        walker.Take(child->name(), child->name_size(), holder->value(), holder->value_size());
        if (first) Walk(child, walker);
    }
}

Worked Walk_With_Rapidxml(const RVString& text) {
    const auto length = static_cast<std::size_t>(text.GetLength());
    std::unique_ptr<char[]> copy;
    const auto document = std::make_unique<rapidxml::xml_document<>>();
    Walker walker;
    const double seconds = Seconds([&] {
        // It parses in place, so the text has to be copied first.
        copy.reset(new char[length + 1]);
        std::memcpy(copy.get(), text.GetString(), length + 1);
        document->parse<rapidxml::parse_no_entity_translation>(copy.get());
        Walk(document.get(), walker);
    });
    return {seconds, walker.Seen()};
}

}  // namespace

const Work kRapidxml_Walk = Walk_With_Rapidxml;
#else
const Work kRapidxml_Walk = nullptr;
#endif

#if defined(BENCH_WITH_LIBXML2)
namespace {

std::size_t Length(const xmlChar* text) {
    return std::strlen(reinterpret_cast<const char*>(text));
}

const char* Plain(const xmlChar* text) {
    return reinterpret_cast<const char*>(text);
}

xmlSAXHandler Libxml2_Handler() {
    xmlSAXHandler handler = {};
    handler.initialized = XML_SAX2_MAGIC;
    handler.startElementNs = [](void* events, const xmlChar* name, const xmlChar*, const xmlChar*,
                                int, const xmlChar**, int, int, const xmlChar**) {
        static_cast<Events*>(events)->Start(Plain(name), Length(name));
    };
    handler.endElementNs = [](void* events, const xmlChar*, const xmlChar*, const xmlChar*) {
        static_cast<Events*>(events)->End();
    };
    handler.characters = [](void* events, const xmlChar* text, int length) {
        static_cast<Events*>(events)->Text(Plain(text), static_cast<std::size_t>(length));
    };
    handler.cdataBlock = handler.characters;
    return handler;
}

Worked Walk_With_Libxml2(const RVString& text) {
    Events events;
    xmlSAXHandler handler = Libxml2_Handler();
    const std::unique_ptr<xmlParserCtxt, void (*)(xmlParserCtxt*)> parser(
        xmlCreateMemoryParserCtxt(text.GetString(), text.GetLength()), &xmlFreeParserCtxt);
    xmlSAXHandler* const before = parser->sax;
    parser->sax = &handler;
    parser->userData = &events;
    xmlCtxtUseOptions(parser.get(), XML_PARSE_HUGE | XML_PARSE_NONET);
    const double seconds = Seconds([&] { xmlParseDocument(parser.get()); });
    parser->sax = before;
    return {seconds, events.Seen()};
}

Worked Walk_File_With_Libxml2(const std::string& path) {
    Events events;
    xmlSAXHandler handler = Libxml2_Handler();
    const std::unique_ptr<xmlParserCtxt, void (*)(xmlParserCtxt*)> parser(
        xmlCreatePushParserCtxt(&handler, &events, nullptr, 0, nullptr), &xmlFreeParserCtxt);
    xmlCtxtUseOptions(parser.get(), XML_PARSE_HUGE | XML_PARSE_NONET);
    const double seconds = Seconds([&] {
        Read_In_Blocks(path, [&](const char* bytes, int count) {
            return xmlParseChunk(parser.get(), bytes, count, 0) == 0;
        });
        xmlParseChunk(parser.get(), nullptr, 0, 1);
    });
    return {seconds, events.Seen()};
}

}  // namespace

const Work kLibxml2_Walk = Walk_With_Libxml2;
const FileWork kLibxml2_Walk_File = Walk_File_With_Libxml2;
#else
const Work kLibxml2_Walk = nullptr;
const FileWork kLibxml2_Walk_File = nullptr;
#endif

#if defined(BENCH_WITH_EXPAT)
namespace {

Worked Walk_File_With_Expat(const std::string& path) {
    Events events;
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate(nullptr),
                                                                         &XML_ParserFree);
    XML_SetUserData(parser.get(), &events);
    XML_SetElementHandler(
        parser.get(),
        [](void* self, const char* name, const char**) {
            static_cast<Events*>(self)->Start(name, std::strlen(name));
        },
        [](void* self, const char*) { static_cast<Events*>(self)->End(); });
    XML_SetCharacterDataHandler(parser.get(), [](void* self, const char* text, int length) {
        static_cast<Events*>(self)->Text(text, static_cast<std::size_t>(length));
    });
    const double seconds = Seconds([&] {
        Read_In_Blocks(path, [&](const char* bytes, int count) {
            return XML_Parse(parser.get(), bytes, count, 0) == XML_STATUS_OK;
        });
        XML_Parse(parser.get(), "", 0, 1);
    });
    return {seconds, events.Seen()};
}

}  // namespace

const FileWork kExpat_Walk_File = Walk_File_With_Expat;
#else
const FileWork kExpat_Walk_File = nullptr;
#endif

}  // namespace rv_bench
