// A document on disk: the items are those that the literal reader gives, and without sections those
// of the same document in memory, wherever the read block cuts it.
#include <RVUtils/XmlParser.h>

#include <cstdint>
#include <cstdlib>

#include "xml/xml_support.h"

namespace {

constexpr std::size_t kBlock = 1048576;

// The document behind as many blanks as put one of its first bytes at the block's end.
std::string Cut_At(std::size_t place, std::string_view document) {
    return std::string(kBlock - place, ' ').append(document);
}

// Loads and walks; what the load left in the directory goes, so that it does not fill up.
std::vector<rv_test::LiteralItem> Items_On_Disk(RVXmlParser& parser, std::string_view document,
                                                bool accepted) {
    static const rv_test::ScratchDirectory s_Scratch;
    const std::string file = s_Scratch / "document.xml";
    rv_test::Write_File(file, document);
    if (parser.Load_File(rv_test::Reference(file)) != accepted) std::abort();
    if (std::filesystem::exists(file) == accepted) std::abort();
    auto items = rv_test::Walk(parser);
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::temp_directory_path()))
        if (entry.path().filename().string().starts_with("ZORTmp_")) std::filesystem::remove(entry);
    return items;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::size_t place = data[0];
    const std::string_view document(reinterpret_cast<const char*>(data) + 1, size - 1);
    static RVXmlParser parser;
    if (place == 0 || document.find("<![CDATA[") != std::string_view::npos) {
        const rv_test::LiteralReader literal(document, rv_test::LiteralReader::Source::kFile);
        if (Items_On_Disk(parser, document, literal.Accepted()) != literal.Items()) std::abort();
        return 0;
    }
    const std::string cut = Cut_At(place, document);
    const bool accepted = parser.Load_Text(rv_test::To_RVString(cut));
    const auto items = rv_test::Walk(parser);
    if (Items_On_Disk(parser, cut, accepted) != items) std::abort();
    return 0;
}
