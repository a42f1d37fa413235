#include <RVUtils/XmlParser.h>
#include <RVUtils/rvdatetm.h>
#include <gtest/gtest.h>

#include <random>
#include <thread>
#include <tuple>

#include "allocation_sweep.h"
#include "environment.h"
#include "report_recorder.h"
#include "scratch.h"
#include "xml_support.h"

namespace {

using namespace rv_test;
namespace fs = std::filesystem;

// One line an item: name, value and count apart by bars; a name alone was never ended.
std::string Lines(const std::vector<LiteralItem>& items) {
    std::string lines;
    for (const LiteralItem& item : items) {
        if (!lines.empty()) lines += ' ';
        lines += item.name;
        if (item.value) lines += '|' + *item.value + '|' + std::to_string(*item.children);
    }
    return lines;
}

std::string Repeated(std::string_view text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

using Source = LiteralReader::Source;
constexpr Source kSources[] = {Source::kText, Source::kFile};

// A parser, a file for it to load, and a place for its temporary files.
struct Loads {
    // Gives whether the document was accepted.
    bool Load(std::string_view document, Source source) {
        if (source == Source::kText) return parser.Load_Text(To_RVString(document));
        Write_File(file, document);
        const bool accepted = parser.Load_File(Reference(file));
        EXPECT_EQ(fs::exists(file), !accepted) << "used up when it was accepted";
        return accepted;
    }
    // The same, with what the literal reader makes of the document.
    bool Load_Alike(std::string_view document, Source source, const std::string& why) {
        SCOPED_TRACE(why);
        const bool accepted = Load(document, source);
        const LiteralReader literal(document, source);
        EXPECT_EQ(accepted, literal.Accepted());
        EXPECT_TRUE(Walk(parser) == literal.Items());
        return accepted;
    }

    ScratchDirectory scratch;
    TempDirectory temp{scratch.Path().string()};
    std::string file = scratch / "document.xml";
    RVXmlParser parser;
};

// Documents that the two loads must read alike, and what they hold.
constexpr struct {
    const char* why;
    std::string_view document;
    bool accepted;
    const char* items;
} kDocuments[] = {
    {"the worked example", "<?xml version=\"1.0\"?><r x=\"1\"><a>  one </a><b/><c><d>x</d></c></r>",
     true, "r||3 a|one|0 b||0 c||1 d|x|0"},
    {"text that nothing stores", "<a>text", true, "a"},
    {"blank behind a start tag's name", "<a ></a>", true, "a||0"},
    {"blank behind an end tag's name", "<a></a >", false, "a"},
    {"blank before the name and behind", "< a b></a b>", true, "a b||0"},
    {"vertical tab around a name", "<\va\v></a>", true, "a||0"},
    {"attributes of a self-closing tag", "<a b='1'  c='2' />", true, "a b='1'  c='2'||0"},
    {"< in quotes", "<a b='<'></a>", false, ""},
    {"comment inside", "<a><!-- note --></a>", false, "a !--"},
    {"doctype", "<!DOCTYPE x><a/>", true, "!DOCTYPE a||0"},
    {"> in text", "<a>x>y</a>", false, "a"},
    {"section's end outside of one", "<a>x]]></a>", false, "a"},
    {"instruction wipes the text", "<a>x<?p?>y</a>", true, "a|y|0"},
    {"tag that goes on behind an instruction", "<?p<q>r>x</qr>", true, "qr|x|0"},
    {"tag that an instruction's end does not end", "<?p<q>r>x</r>", false, "qr"},
    {"text before a child", "<a>x<b>y</b>z</a>", true, "a|z|1 b|xy|0"},
    {"text before a self-closing element", "<a>x<b/>y</a>", true, "a|xy|1 b|x|0"},
    {"blanks that two share", "<a>x  <b/><c/> </a>", true, "a|x|2 b|x  |0 c|x  |0"},
    {"trimmed and dropped bytes", "<a>\v\f\n x\ty \r\n</a>", true, "a|xy|0"},
    {"self-closing and nothing else", "</>", true, "||0"},
    {"empty tag", "<>", false, ""},
    {"element without a name", "< ></a>and text behind it", false, ""},
    {"end tag with nothing open", "</a>", false, ""},
    {"end tag of another", "<a><b></a>", false, "a b"},
    {"high bytes", "<\xE4>\xFF\x80</\xE4>", true, "\xE4|\xFF\x80|0"},
    {"NUL bytes", std::string_view("<a\0>\0x\0</a\0>", 13), true, nullptr},
    {"section without an end, then <", "<a><![CDATA[x<b>", false, "a"},
    {"section", "<a>lost<![CDATA[<x>&\t\n]]> y </a>", true, "a|<x>&\t\n y|0"},
    {"section in a section", "<a><![CDATA[x<![CDATA[y]]>z]]]]></a>", true, "a|x<![CDATA[y]]>z]]|0"},
    {"the second section in one element", "<a><![CDATA[x]]><![CDATA[]]><b/></a>", true,
     "a||1 b||0"},
    {"two openings, one end", "<![CDATA[xa><![CDATA[y]]><b/>", true, "a b|y|0"},
};

TEST(XmlParser, DocumentsInMemoryAndOnDisk) {
    Loads loads;
    for (const auto& row : kDocuments) {
        loads.Load_Alike(row.document, Source::kFile, row.why);
        EXPECT_EQ(loads.Load_Alike(row.document, Source::kText, row.why), row.accepted) << row.why;
        if (row.items) {
            EXPECT_EQ(Lines(Walk(loads.parser)), row.items) << row.why;
        }
    }
}

// Bits of documents, put together at random; each ends at a "~".
std::string Random_Document(std::mt19937& random, std::size_t most) {
    static constexpr std::string_view kBits(
        "<~>~/~<a>~</a>~<b/>~<a x='1'>~ ~x~yyy~\n~\t~\v~<![CDATA[~]]>~<![CDATA[~]~[~<?~?>~</~\0~"
        "text of more than sixteen bytes ~<a>v</a>~<![CDATA[b]]>~"
        "<elementOfMoreThanSixteenBytes with='attributes'>~</elementOfMoreThanSixteenBytes>~",
        222);
    std::vector<std::string_view> bits;
    for (std::size_t at = 0; at < kBits.size(); at += bits.back().size() + 1)
        bits.push_back(kBits.substr(at, kBits.find('~', at) - at));
    std::string document;
    for (std::size_t count = random() % most + 1; count > 0; --count)
        document += bits[random() % bits.size()];
    return document;
}

TEST(XmlParser, RandomDocumentsLikeTheLiteralReader) {
    std::mt19937 random(20010203);
    int accepted = 0;
    Loads loads;
    for (int i = 0; i < 60000 && !HasFailure(); ++i) {
        const std::string document = Random_Document(random, 24);
        accepted += loads.Load_Alike(document, Source::kText, document);
    }
    EXPECT_GT(accepted, 1000) << "both outcomes occur";
    for (int i = 0; i < 600 && !HasFailure(); ++i) {
        const std::string document = Random_Document(random, 12);
        loads.Load_Alike(document, Source::kFile, document);
    }
}

// Markers and tags moved across the edge of the read block, byte by byte; NUL bytes that hide
// markers up to the end of the search block and no further.
TEST(XmlParser, BlockEdgesInAFile) {
    constexpr std::size_t kBlock = 1048576;
    constexpr std::size_t kStep = kBlock - 100;
    Loads loads;
    const auto load = [&](const std::string& document, const auto&... why) {
        loads.Load_Alike(document, Source::kFile, testing::PrintToString(std::tuple(why...)));
    };
    const std::string tail = "<b>y</b><![CDATA[inner<![CDATA[]]>]]></a>";
    for (std::size_t back = 0; back <= tail.size() + 2; back += 3)
        load("<a>" + std::string(kBlock - 3 - back, 'x') + tail, "text up to the block's end",
             back);
    for (std::size_t back = 0; back <= 14; ++back)
        load("<a><![CDATA[" + std::string(kBlock - 12 - back, 'x') + "<![CDATA[y]]>]]>z</a>",
             "body up to the block's end", back);
    for (const std::size_t behind :
         {kStep - 1, kStep, kStep + 1, kBlock - 3, kBlock, 2 * kStep - 1, 2 * kStep})
        for (const std::size_t nul : {std::size_t{0}, kStep - 1, kStep, kStep + 1}) {
            if (nul >= behind) continue;
            std::string body(behind, 'x');
            body[nul] = '\0';
            load("<a><![CDATA[" + body + "]]></a>", "NUL, end", nul, behind);
            body[behind / 2] = '\0';
            load("<![CDATA[xa><![CDATA[" + body + "]]><![CDATA[" + body + "]]></a>",
                 "NUL, end, behind one without an end", nul, behind);
        }
    load("<a>" + std::string(3 * kBlock, 'x') + "</a>", "a run longer than the block");
    load("<a" + std::string(3 * kBlock, 'x') + ">", "a tag longer than the block");
}

TEST(XmlParser, NestingIsCountedInSixteenBits) {
    constexpr struct {
        const char* why;
        std::size_t nested, closed;
        bool accepted;
        std::size_t inner_closings;  // in the value, if it is accepted
    } kRows[] = {
        {"deep", 60000, 60001, true, 60000},
        {"one too few", 60000, 60000, false, 0},
        {"as deep as it goes", 65534, 65535, true, 65534},
        {"wraps: ends at the first", 65535, 1, true, 0},
        {"wraps: the second is text", 65535, 2, false, 0},
        {"wraps: and none", 65535, 0, false, 0},
        {"wraps, and goes on", 70000, 1, true, 0},
    };
    Loads loads;
    for (const auto& row : kRows) {
        const std::string openings = Repeated("<![CDATA[", row.nested);
        const std::string document =
            "<a><![CDATA[" + openings + Repeated("]]>", row.closed) + "</a>";
        const std::string body = openings + Repeated("]]>", row.inner_closings);
        for (const Source source : kSources) {
            const std::string value = source == Source::kText ? body : LiteralReader::Filed(body);
            EXPECT_EQ(loads.Load(document, source), row.accepted) << row.why;
            EXPECT_TRUE(Lines(Walk(loads.parser)) == (row.accepted ? "a|" + value + "|0" : "a"));
        }
    }
}

// Openings with and without an end, far apart, so that what is remembered of a failed search is
// asked for again and again: "<q]]>" is a tag that ends a section before it.
TEST(XmlParser, SectionsAmongThoseWithoutAnEnd) {
    constexpr std::string_view kBits[] = {"<![CDATA[xa>", "<![CDATA[xa>", "<![CDATA[y]]>", "<q]]>"};
    std::mt19937 random(7);
    Loads loads;
    for (const char* const round : {"first", "second", "with NUL bytes"}) {
        std::string document;
        while (document.size() < 80000) {
            document += kBits[random() % std::size(kBits)];
            document.append(random() % 600, 'z');
            if (*round == 'w' && random() % 30 == 0) document += '\0';
        }
        for (const Source source : kSources)
            loads.Load_Alike(document, source, round);
    }
}

// Each of these takes hours where some step is not linear.
TEST(XmlParser, HostileDocumentsEnd) {
    constexpr std::size_t kMillion = 1000000;
    const struct {
        const char* why;
        std::string document;
        bool accepted;
        std::size_t items;
    } kRows[] = {
        {"sections without an end", Repeated("<![CDATA[xa>", kMillion), true, kMillion},
        {"the same with NUL bytes", Repeated(std::string_view("<![CDATA[xa>\0", 13), kMillion),
         true, kMillion},
        {"nesting that wraps, with an end", Repeated("<![CDATA[xa>", kMillion) + "<q]]>", true, 0},
        {"openings only", Repeated("<![CDATA[", kMillion), false, 0},
        {"open elements", Repeated("<a>", kMillion), true, kMillion},
        {"open elements with text before", std::string(kMillion, 'x') + Repeated("<a>", kMillion),
         true, kMillion},
        {"self-closing elements that share a text",
         "<a>" + std::string(kMillion, 'x') + Repeated("<b/>x", 1000), true, 1001},
        {"one opening and a long run", "<![CDATA[xa>" + std::string(48 * kMillion, 'x'), true, 1},
        {"NUL bytes behind openings and an end",
         Repeated("<![CDATA[xa>", 60000) + "<q]]>" + std::string(1, '\0'), true, 59999},
        {"instructions", Repeated("<?x>", kMillion), true, 0},
        {"brackets in a section", "<![CDATA[" + Repeated("]", kMillion) + "]]><a/>", true, 1},
    };
    Loads loads;
    const auto count = [&parser = loads.parser] {
        RVString name, value;
        ULONG children;
        std::size_t items = 0;
        for (parser.Reset(); parser.Next(name, value, children);)
            ++items;
        return items;
    };
    for (const auto& row : kRows) {
        for (const Source source : kSources) {
            EXPECT_EQ(loads.Load(row.document, source), row.accepted) << row.why;
            EXPECT_EQ(count(), row.items) << row.why;
        }
    }
}

TEST(XmlParser, WalkAndReset) {
    RVXmlParser parser;
    RVString name("n"), value("v");
    ULONG children = 5;
    EXPECT_FALSE(parser.Next(name, value, children)) << "new";
    parser.Reset();
    EXPECT_FALSE(parser.Next(name, value, children)) << "nothing to start over";
    EXPECT_EQ(Text(name) + Text(value), "nv") << "outputs are not touched";

    ASSERT_TRUE(parser.Load_Text("<a><b>x</b>"));
    ASSERT_TRUE(parser.Next(name, value, children));
    EXPECT_EQ(Text(name) + "|" + Text(value), "a|") << "emptied for an open element";
    EXPECT_EQ(children, 5u) << "which leaves the count alone";
    parser.Reset();
    ASSERT_TRUE(parser.Next(name, value, children));
    EXPECT_EQ(Text(name), "a");
    ASSERT_TRUE(parser.Next(value, value, children));
    EXPECT_EQ(Text(value), "b") << "one string for both holds what is written last";
    for (int i = 0; i < 2; ++i)
        EXPECT_FALSE(parser.Next(name, value, children));

    EXPECT_FALSE(parser.Load_Text("<c/></d>"));
    EXPECT_FALSE(parser.Next(name, value, children)) << "refused: on nothing until Reset";
    EXPECT_EQ(Lines(Walk(parser)), "c||0") << "a load ends the result before";
}

// Sizes around those of the blocks that items, names and texts are held in.
TEST(XmlParser, NamesAndValuesOfAnyLength) {
    std::string document;
    for (std::size_t size : {1u, 15u, 16u, 17u, 4095u, 4096u, 4097u, 65536u, 300000u, 1u, 3000000u})
        for (std::size_t part = 1; part <= 3; ++part) {
            const std::string name(size / part + 1, static_cast<char>('a' + document.size() % 26));
            const std::string value(size - part % 2, static_cast<char>('A' + document.size() % 25));
            document += "<" + name + ">" + value + "</" + name + ">";
        }
    document += Repeated("<e/>", 60000);
    Loads loads;
    for (const Source source : kSources)
        EXPECT_TRUE(loads.Load_Alike(document, source, "many lengths"));
}

// The references of the items of a document, in order.
std::vector<std::string> References(RVXmlParser& parser) {
    std::vector<std::string> paths;
    RVString name, value;
    ULONG children;
    for (parser.Reset(); parser.Next(name, value, children);)
        if (value.Find("FILE://") == 0) paths.push_back(Text(value).substr(7));
    return paths;
}

TEST(XmlParser, ReferencesAreUsedUpByLoadFile) {
    Loads loads;
    std::vector<std::string> outer;
    {
        RVXmlParser parser;
        Write_File(loads.file,
                   "<a><![CDATA[<in><![CDATA[<deep/>]]></in>]]></a><b><![CDATA[kept]]></b>");
        ASSERT_TRUE(parser.Load_File(Reference(loads.file)));
        outer = References(parser);
    }
    ASSERT_EQ(outer.size(), 2u);
    EXPECT_EQ(Read_File(outer[1]), "kept") << "no parser takes a temporary file with it";
    const std::string form = fs::path(outer[0]).filename().string();
    ASSERT_EQ(form.size(), 25u);
    EXPECT_EQ(form.substr(0, 7) + form.substr(21), "ZORTmp_.tmp");
    RVString digits = To_RVString(form.substr(7, 14));
    EXPECT_TRUE(RVDateTime::Validate_Db_Value(digits)) << form;

    ASSERT_TRUE(loads.parser.Load_File(To_RVString("file://" + outer[0])));
    EXPECT_FALSE(fs::exists(outer[0]));
    const std::vector<std::string> inner = References(loads.parser);
    ASSERT_EQ(inner.size(), 1u);
    ASSERT_TRUE(loads.parser.Load_File(To_RVString("1234567" + inner[0])));
    EXPECT_FALSE(fs::exists(inner[0]));
    EXPECT_EQ(Lines(Walk(loads.parser)), "deep||0");
}

TEST(XmlParser, FilesThatCannotBeLoaded) {
    Loads loads;
    ReportRecorder recorder;
    for (const std::string& reference :
         {"FILE://" + loads.scratch / "none.xml", "FILE://" + loads.scratch.Path().string(),
          std::string("FILE://"), std::string("FILE"), std::string()}) {
        EXPECT_FALSE(loads.parser.Load_File(To_RVString(reference))) << reference;
        EXPECT_EQ(recorder.Take(), (Reports{{25, "XmlParser"}})) << reference;
    }
    EXPECT_FALSE(loads.Load("<a><![CDATA[body]]></b>", Source::kFile)) << "refused by its bytes";
    EXPECT_TRUE(loads.Load("", Source::kFile)) << "empty";
    EXPECT_EQ(recorder.Take(), Reports());
}

// A thousand bodies in one second, from several parsers at once: each keeps its own.
TEST(XmlParser, TemporaryNamesAreKeptApart) {
    constexpr int kBodies = 250;
    const Loads loads;
    RVXmlParser parsers[4];
    std::vector<std::thread> threads;
    for (RVXmlParser& parser : parsers)
        threads.emplace_back([&, number = static_cast<int>(threads.size())] {
            const std::string file = loads.file + std::to_string(number);
            Write_File(file, Numbered_Bodies(number, kBodies));
            EXPECT_TRUE(parser.Load_File(Reference(file)));
        });
    for (std::thread& thread : threads)
        thread.join();
    for (int number = 0; number < 4; ++number)
        EXPECT_TRUE(Holds_Numbered_Bodies(parsers[number], number, kBodies)) << number;
}

// Runs `load` with every allocation refused in turn, and looks that nothing but the memory
// exception comes out, that the same parser reads the document once there is memory, and that it
// goes on without the store that is sized in advance. Gives how often it told that it did.
template <class Load>
int Expect_Load_Survives(RVXmlParser& parser, Load load, std::string_view expected) {
    ReportRecorder recorder;
    int exceptions = 0, told = 0;
    const auto attempt = [&] {
        const bool loaded = load();
        if (recorder.Take() != Reports{{23, "XmlParser"}}) return;
        ++told;
        EXPECT_TRUE(loaded);
        EXPECT_EQ(Lines(Walk(parser)), expected);
    };
    for (const auto mode :
         {FailingAllocation::Mode::kOnce, FailingAllocation::Mode::kFromThereOn}) {
        EXPECT_GT(Sweep_Exceptions(
                      attempt, [&] { ++exceptions; }, mode),
                  5);
        EXPECT_GT(exceptions, 3);
        EXPECT_TRUE(load());
        EXPECT_EQ(Lines(Walk(parser)), expected);
    }
    return told;
}

TEST(XmlParser, AllocationFailures) {
    const Loads loads;
    RVXmlParser parser;
    const std::string long_text(5000, 'x');
    const std::string document =
        "<r><a>" + long_text + "</a><b><![CDATA[in <![CDATA[]]>]]></b></r>";
    const RVString text = To_RVString(document);
    const RVString endless = To_RVString("<![CDATA[xa>" + long_text + "<b/>");
    const RVString reference = Reference(loads.file);
    const std::string first = "r||2 a|" + long_text + "|0 b|";
    const auto load_text = [&] { return parser.Load_Text(text); };
    EXPECT_GT(Expect_Load_Survives(parser, load_text, first + "in <![CDATA[]]>|0"), 0);
    const auto load_endless = [&] { return parser.Load_Text(endless); };
    EXPECT_GT(Expect_Load_Survives(parser, load_endless, "a b|" + long_text + "|0"), 0);
    const auto load_file = [&] {
        for (const auto& entry : fs::directory_iterator(loads.scratch.Path()))
            fs::remove(entry);
        Write_File(loads.file, document);
        try {
            return parser.Load_File(reference);
        } catch (CMemoryException*) {
            EXPECT_EQ(std::distance(fs::directory_iterator(loads.scratch.Path()), {}), 1)
                << "nothing stays but the document";
            throw;
        }
    };
    Expect_Load_Survives(parser, load_file, first + "FILE{in <![CDATA[]]>}|0");

    ASSERT_TRUE(parser.Load_Text(text));
    RVString name, value;
    ULONG children;
    int items = 0;
    Sweep_Exceptions([&] {
        while (parser.Next(name, value, children))
            ++items;
    });
    EXPECT_EQ(items, 3) << "an item that could not be handed out comes again";
}

}  // namespace
