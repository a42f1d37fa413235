#include <cstdio>

#include "commands.h"
#include "document.h"
#include "failure.h"
#include "tree_walk.h"

namespace attachments {
namespace {

// Indentation beyond this is written as a number.
constexpr std::size_t kDeepestDrawn = 40;

void Print_Row(const std::string& size, const std::string& branch, const std::string& text) {
    char column[32];
    std::snprintf(column, sizeof column, "%15s  ", size.c_str());
    Print(column + branch + text);
}

// Draws the tree of the files that documents carry.
class FileTree {
public:
    explicit FileTree(Loading loading) : m_Loading(loading) {}

    void Print_All(RVXmlParser& parser, const std::string& path, std::uint64_t length) {
        const auto attachments = Read_Attachments(parser, path, m_Loading.work);
        Print_Row(Grouped(length), "", Visible(path) + Carrying(attachments.size()));
        Print_Level(attachments, path, "", 1);
    }
    std::size_t Damaged_Count() const { return m_Damaged; }

private:
    static std::string Carrying(std::size_t count) {
        return " (" + Counted(count, "attachment") + ")";
    }

    void Print_Level(const std::vector<Attachment>& attachments, const std::string& shown,
                     const std::string& indent, int level) {
        for (const Attachment& attachment : attachments) {
            const bool last = &attachment == &attachments.back();
            const std::string branch = indent + (last ? "`-- " : "|-- ");
            if (!Is_Whole(attachment))
                Print_Damaged(attachment, branch);
            else if (attachment.is_document)
                Print_Document(attachment, shown + "/" + attachment.name, indent, last, level);
            else
                Print_Row(Grouped(attachment.size), branch, Visible(attachment.name));
            if (!attachment.is_document) Discard(attachment);
        }
    }

    void Print_Damaged(const Attachment& attachment, const std::string& branch) {
        Print_Row(Grouped(attachment.size), branch, Visible(attachment.name) + " (damaged)");
        ++m_Damaged;
    }

    void Print_Document(const Attachment& attachment, const std::string& shown,
                        const std::string& indent, bool last, int level) {
        RVXmlParser parser;
        Load_Body(parser, attachment, shown, level, m_Loading);
        const auto inner = Read_Attachments(parser, shown, m_Loading.work);
        Print_Row(Grouped(attachment.size), indent + (last ? "`-- " : "|-- "),
                  Visible(attachment.name) + Carrying(inner.size()));
        Print_Level(inner, shown, indent + (last ? "    " : "|   "), level + 1);
    }

    Loading m_Loading;
    std::size_t m_Damaged = 0;
};

std::uint64_t Size_Of(const RVString& value, const WorkFolder& work) {
    CFile body;
    if (work.Holds(value) && body.Open(Path_Of_Reference(value).c_str(), CFile::modeRead))
        return body.GetLength();
    return static_cast<std::uint64_t>(value.GetLength());
}

// Draws the tree of a document's elements, each with the size of its value.
void Print_Elements(RVXmlParser& parser, const std::string& path, const WorkFolder& work) {
    TreeWalk walk(parser);
    std::vector<bool> last_on_level;
    std::size_t count = 0;
    for (Element element; walk.Next(element); ++count) {
        last_on_level.resize(element.depth + 1);
        last_on_level[element.depth] = element.last;
        std::string branch;
        for (std::size_t level = 1; level < element.depth && level < kDeepestDrawn; ++level)
            branch += last_on_level[level] ? "    " : "|   ";
        if (element.depth > kDeepestDrawn)
            branch += "level " + std::to_string(element.depth) + ": ";
        else if (element.depth > 0)
            branch += element.last ? "`-- " : "|-- ";
        const std::string_view name(element.name,
                                    static_cast<std::size_t>(element.name.GetLength()));
        Print_Row(Grouped(Size_Of(element.value, work)), branch,
                  Visible(name) + (element.closed ? "" : " (never ended)"));
    }
    if (count == 0) throw Damaged(path, "there is no element in it");
}

}  // namespace

void List(const std::string& document) {
    WorkFolder work;
    Progress progress("reading");
    const Loading loading{work, progress};
    RVXmlParser parser;
    const std::uint64_t length = Length_Of(document);
    Load_Copy(parser, document, loading);
    if (!Carries_Files(parser)) return Print_Elements(parser, document, work);
    FileTree tree(loading);
    tree.Print_All(parser, document, length);
    if (tree.Damaged_Count() > 0)
        throw Damaged(document, Counted(tree.Damaged_Count(), "attachment") + " in it damaged");
}

}  // namespace attachments
