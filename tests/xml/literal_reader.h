// The reader's rules once more, byte by byte and without a thought for speed: what the library's
// reader is held against.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rv_test {

struct LiteralItem {
    std::string name;
    std::optional<std::string> value;  // none, like the count, for an element that was never ended
    std::optional<std::uint32_t> children;

    bool operator==(const LiteralItem&) const = default;
};

class LiteralReader {
public:
    // How far a NUL hides what stands behind it.
    enum class Source { kText, kFile };

    explicit LiteralReader(std::string_view document, Source source = Source::kText)
        : m_Document(document), m_Source(source) {
        m_Accepted = Read();
    }

    bool Accepted() const { return m_Accepted; }
    const std::vector<LiteralItem>& Items() const { return m_Items; }

    // What stands in a value for a body that went to a file.
    static std::string Filed(std::string_view body) {
        std::string filed("FILE{");
        filed += body;
        return filed += '}';
    }

private:
    static constexpr std::size_t kNone = std::string_view::npos;
    static constexpr std::string_view kOpen = "<![CDATA[";
    static constexpr std::string_view kClose = "]]>";

    static std::string Trim(std::string text) {
        constexpr std::string_view kWhite = "\t\n\v\f\r ";
        text.erase(std::min(text.find_last_not_of(kWhite) + 1, text.size()));
        text.erase(0, std::min(text.find_first_not_of(kWhite), text.size()));
        return text;
    }

    bool Read() {
        for (std::size_t at = 0; at < m_Document.size(); ++at) {
            const char byte = m_Document[at];
            if (byte == '\t' || byte == '\n' || byte == '\r') continue;
            if (byte == '<') {
                if (m_In_Tag) return false;
                if (m_Document.substr(at, 2) == "<?") {
                    m_In_Instruction = true;
                } else if (m_Document.substr(at, kOpen.size()) == kOpen) {
                    at = Section(at + kOpen.size()) - 1;
                } else {
                    m_In_Tag = true;
                    m_Tag.clear();
                }
            } else if (byte == '>') {
                if (m_In_Instruction) {
                    m_Text.clear();
                    m_In_Instruction = false;
                    continue;
                }
                if (!m_In_Tag || m_Tag.empty()) return false;
                m_In_Tag = false;
                if (!Tag(m_Tag)) return false;
            } else {
                (m_In_Tag ? m_Tag : m_Text) += byte;
            }
        }
        return true;
    }

    bool Tag(std::string tag) {
        if (tag.back() == '/') {
            tag.pop_back();
            m_Items.push_back({Trim(tag), m_Text, 0});
            ++m_Count;
            return true;
        }
        if (tag.front() == '/') {
            if (m_Open.empty()) return false;
            const Element element = m_Open.back();
            m_Open.pop_back();
            if (m_Items[element.item].name != tag.substr(1)) return false;
            m_Items[element.item].value = Trim(m_Text);
            m_Items[element.item].children = m_Count;
            m_Text.clear();
            m_Count = element.count;
            return true;
        }
        if (const std::size_t blank = tag.find(' '); blank != kNone && blank > 0) tag.erase(blank);
        m_Items.push_back({Trim(tag), std::nullopt, std::nullopt});
        m_Open.push_back({m_Items.size() - 1, m_Count + 1});
        m_Count = 0;
        return true;
    }

    // Gives the place where the scan goes on.
    std::size_t Section(std::size_t body) {
        std::uint16_t depth = 1;
        std::size_t search = body;
        for (;;) {
            const std::size_t a = Find(kOpen, search);
            const std::size_t b = Find(kClose, search);
            if (a != kNone && (b == kNone || a < b)) {
                search = a + kOpen.size();
                ++depth;
            } else if (b != kNone) {
                search = b + kClose.size();
                --depth;
            }
            if (depth == 0 && b != kNone) {
                const std::string_view content = m_Document.substr(body, b - body);
                m_Text = m_Source == Source::kFile ? Filed(content) : std::string(content);
                return b + kClose.size();
            }
            if (depth == 0 || (a == kNone && b == kNone)) {
                m_In_Tag = true;
                m_Tag.clear();
                return body + 1;
            }
        }
    }

    std::size_t Find(std::string_view marker, std::size_t from) const {
        if (m_Source == Source::kText) return Find_In(m_Document, marker, from);
        for (std::size_t at = from; at < m_Document.size(); at += 1048576 - 100) {
            const std::size_t found = Find_In(m_Document.substr(at, 1048576), marker, 0);
            if (found != kNone) return at + found;
        }
        return kNone;
    }

    // Up to the first NUL.
    static std::size_t Find_In(std::string_view text, std::string_view marker, std::size_t from) {
        return text.substr(0, text.find('\0', from)).find(marker, from);
    }

    struct Element {
        std::size_t item;
        std::uint32_t count;
    };

    std::string_view m_Document;
    Source m_Source;
    std::vector<LiteralItem> m_Items;
    std::vector<Element> m_Open;
    std::string m_Tag;
    std::string m_Text;
    bool m_In_Tag = false;
    bool m_In_Instruction = false;
    std::uint32_t m_Count = 0;
    bool m_Accepted = false;
};

}  // namespace rv_test
