#include "script.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include "../../platform/image_file.h"
#include "tokens.h"

namespace rv_rc {
namespace {

constexpr Id kLargestId = 0xFFFF;

const char* Fault_Of_Bitmap(rv::FileBytes file) {
    rv::FileImage image;
    return rv::Find_Bitmap(file, image);
}

template <rv::IconKind kind>
const char* Fault_Of_Icon(rv::FileBytes file) {
    rv::FileImage image;
    return rv::Find_Icon(file, kind, 32, image);
}

// A kind of resource that is one file.
struct FileKind {
    std::string_view word;
    std::map<Id, std::string> Script::*table;
    const char* (*fault)(rv::FileBytes file);
};

constexpr FileKind kFileKinds[] = {
    {"BITMAP", &Script::bitmaps, &Fault_Of_Bitmap},
    {"ICON", &Script::icons, &Fault_Of_Icon<rv::IconKind::kIcon>},
    {"CURSOR", &Script::cursors, &Fault_Of_Icon<rv::IconKind::kCursor>},
};

bool Is_Utf8(std::string_view text) {
    while (!text.empty()) {
        const auto first = static_cast<unsigned char>(text.front());
        const std::size_t length = first < 0x80    ? 1
                                   : first >= 0xF0 ? 4
                                   : first >= 0xE0 ? 3
                                   : first >= 0xC2 ? 2
                                                   : 0;
        if (length == 0 || first > 0xF4 || text.size() < length) return false;
        for (std::size_t i = 1; i < length; ++i)
            if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) return false;
        text.remove_prefix(length);
    }
    return true;
}

class Reader {
public:
    Reader(std::string_view source, const std::string& name) : m_Tokens(source, name) {}

    Script Read() {
        while (m_Tokens.Current().kind != TokenKind::kEnd)
            Read_Statement();
        m_Script.files.insert(m_Tokens.Files().begin(), m_Tokens.Files().end());
        return std::move(m_Script);
    }

private:
    void Read_Statement() {
        if (m_Tokens.Skip("LANGUAGE")) return Read_Language();
        if (m_Tokens.Skip("STRINGTABLE")) return Read_Strings();
        if (m_Tokens.Current().kind == TokenKind::kWord)
            m_Tokens.Fail(m_Tokens.Shown() +
                          " is no number and no statement; resources are found " +
                          "by numbers from 1 to 65535");
        const Id id = Read_Id();
        for (const FileKind& kind : kFileKinds)
            if (m_Tokens.Skip(kind.word)) return Read_File(id, kind);
        m_Tokens.Fail("a resource " + m_Tokens.Shown() + " is not known on this platform; put it " +
                      "between #ifdef _WIN32 and #endif");
    }

    void Read_Language() {
        Read_Sum();
        if (!m_Tokens.Skip(","))
            m_Tokens.Fail("LANGUAGE takes two numbers; put a comma between them");
        Read_Sum();
    }

    // DISCARDABLE and the like, which are of no effect anywhere any more.
    bool Skip_Option() {
        for (const char* const option :
             {"DISCARDABLE", "MOVEABLE", "FIXED", "PRELOAD", "LOADONCALL", "PURE", "IMPURE"})
            if (m_Tokens.Skip(option)) return true;
        if (m_Tokens.Skip("LANGUAGE")) {
            Read_Language();
            return true;
        }
        const bool numbered = m_Tokens.Skip("CHARACTERISTICS") || m_Tokens.Skip("VERSION");
        if (numbered) Read_Sum();
        return numbered;
    }

    void Read_Strings() {
        while (Skip_Option()) {
        }
        if (!m_Tokens.Skip("BEGIN") && !m_Tokens.Skip("{"))
            m_Tokens.Fail("STRINGTABLE is followed by " + m_Tokens.Shown() + "; put BEGIN there");
        while (!m_Tokens.Skip("END") && !m_Tokens.Skip("}")) {
            const Id id = Read_Id();
            m_Tokens.Skip(",");
            if (m_Tokens.Current().kind != TokenKind::kText)
                m_Tokens.Fail("string " + std::to_string(id) + " is followed by " +
                              m_Tokens.Shown() + "; put its text there, between quotation marks");
            Add(m_Script.strings, "string", id, Read_Text());
        }
    }

    std::string Read_Text() {
        std::string text;
        while (m_Tokens.Current().kind == TokenKind::kText) {
            if (!Is_Utf8(m_Tokens.Current().text))
                m_Tokens.Fail("the text is not in UTF-8; save the script in this encoding");
            text += m_Tokens.Take().text;
        }
        return text;
    }

    void Read_File(Id id, const FileKind& kind) {
        while (Skip_Option()) {
        }
        if (m_Tokens.Current().kind != TokenKind::kText)
            m_Tokens.Fail(std::string(kind.word) + " " + std::to_string(id) + " is followed by " +
                          m_Tokens.Shown() + "; put a file name there, between quotation marks");
        std::string name = m_Tokens.Current().text;
        for (char& c : name)
            if (c == '\\') c = '/';
        const std::string path =
            (std::filesystem::path(m_Tokens.File()).parent_path() / name).string();
        std::ifstream file(path, std::ios::binary);
        if (!file || std::filesystem::is_directory(path))
            m_Tokens.Fail("cannot open \"" + path + "\"; check the name");
        std::string bytes{std::istreambuf_iterator<char>(file), {}};
        const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
        if (const char* const fault = kind.fault({data, bytes.size()}))
            m_Tokens.Fail("\"" + path + "\": " + fault);
        Add(m_Script.*kind.table, kind.word, id, std::move(bytes));
        m_Script.files.insert(path);
        m_Tokens.Take();
    }

    void Add(std::map<Id, std::string>& table, std::string_view what, Id id, std::string content) {
        if (!table.emplace(id, std::move(content)).second)
            m_Tokens.Fail(std::string(what) + " " + std::to_string(id) +
                          " is there twice; take another number for one of them");
    }

    Id Read_Id() {
        const Id id = Read_Sum();
        if (id > kLargestId)
            m_Tokens.Fail("the number " + std::to_string(id) +
                          " is too large; take one up to 65535");
        return id;
    }

    Id Read_Sum() {
        Id sum = Read_Operand();
        for (;;) {
            if (m_Tokens.Skip("+"))
                sum += Read_Operand();
            else if (m_Tokens.Skip("-"))
                sum -= Read_Operand();
            else if (m_Tokens.Skip("|"))
                sum |= Read_Operand();
            else
                return sum;
        }
    }

    Id Read_Operand() {
        // Nothing needs many, and each takes room on the stack.
        constexpr int kDeepest = 100;
        if (m_Tokens.Skip("(")) {
            if (++m_Depth > kDeepest) m_Tokens.Fail("too many brackets; leave some out");
            const Id inner = Read_Sum();
            if (!m_Tokens.Skip(")")) m_Tokens.Fail("a bracket is not closed; put a ) there");
            --m_Depth;
            return inner;
        }
        if (m_Tokens.Current().kind != TokenKind::kNumber)
            m_Tokens.Fail(m_Tokens.Shown() + " stands where a number should; define the name, or " +
                          "include the header that does");
        return m_Tokens.Take().number;
    }

    Tokens m_Tokens;
    Script m_Script;
    int m_Depth = 0;
};

}  // namespace

Script Read_Script(std::string_view preprocessed, const std::string& name) {
    return Reader(preprocessed, name).Read();
}

}  // namespace rv_rc
