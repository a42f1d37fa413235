// A document in memory: the items are those that the literal reader gives.
#include <RVUtils/XmlParser.h>

#include <cstdint>
#include <cstdlib>

#include "xml/xml_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view document(reinterpret_cast<const char*>(data), size);
    const rv_test::LiteralReader literal(document);
    static RVXmlParser parser;
    if (parser.Load_Text(rv_test::To_RVString(document)) != literal.Accepted()) std::abort();
    if (rv_test::Walk(parser) != literal.Items()) std::abort();
    return 0;
}
