#include <RVUtils/XmlParser.h>

#include <cstdio>
#include <optional>
#include <set>
#include <string_view>

#include "commands.h"
#include "document.h"
#include "failure.h"
#include "names.h"
#include "section_scan.h"

namespace attachments {
namespace {

struct Input {
    std::string path;
    std::string name;
    std::uint64_t length;
};

std::vector<Input> Check_Inputs(const std::vector<std::string>& files) {
    std::vector<Input> inputs;
    std::set<std::string> names;
    for (const std::string& path : files) {
        const std::string name = Base_Name(path);
        inputs.push_back({path, name, Length_Of(path)});
        if (const char* const why = Why_Unsafe(name))
            throw Failure(ExitCode::kFailed,
                          "cannot pack " + Quoted(path) + ": its name, " + Quoted(name) +
                              ", cannot be unpacked again: " + why + "; rename it");
        if (!names.insert(name).second)
            throw Failure(ExitCode::kFailed, "cannot pack " + Quoted(path) +
                                                 ": another file is named " + Quoted(name) +
                                                 ", too; rename one of them");
    }
    return inputs;
}

bool Begins_As_Document(const Input& input) {
    Progress silent("");
    SourceFile file(Openable(input.path), input.path, silent);
    char head[sizeof kHead - 1];
    return file.Next_Block() && file.Read(head, sizeof head) == sizeof head &&
           std::string_view(head, sizeof head) == kHead;
}

// Tells which files can be nested: those that a later list or unpack will be able to read.
class Nesting {
public:
    explicit Nesting(Progress& progress) : m_Progress(progress) {}

    bool Is_For(const Input& input) {
        if (!Begins_As_Document(input) || !Fits_Section(input)) return false;
        if (!m_Work) m_Work.emplace();
        try {
            RVXmlParser parser;
            Load_Copy(parser, input.path, {*m_Work, m_Progress});
            Check(parser, input.path, 1);
            return true;
        } catch (const Failure& failure) {
            // It goes as the bytes that it is.
            if (failure.Code() == ExitCode::kDamaged) return false;
            throw;
        }
    }

private:
    bool Fits_Section(const Input& input) {
        m_Progress.Expect(input.length);
        SourceFile file(Openable(input.path), input.path, m_Progress);
        SectionScan scan;
        std::vector<char> buffer(256 * 1024);
        while (file.Next_Block())
            while (const UINT read = file.Read(buffer.data(), static_cast<UINT>(buffer.size())))
                scan.Add(buffer.data(), read);
        return scan.Fits();
    }

    void Check(RVXmlParser& parser, const std::string& shown, int level) {
        for (const Attachment& attachment : Read_Attachments(parser, shown, *m_Work)) {
            const std::string inner_shown = shown + "/" + attachment.name;
            if (!Is_Whole(attachment)) throw Damaged(inner_shown, "it is not whole");
            if (attachment.is_document) {
                RVXmlParser inner;
                Load_Body(inner, attachment, inner_shown, level + 1, {*m_Work, m_Progress});
                Check(inner, inner_shown, level + 1);
            } else {
                Discard(attachment);
            }
        }
    }

    Progress& m_Progress;
    std::optional<WorkFolder> m_Work;
};

void Write_Content(SourceFile& source, NewFile& document) {
    document.Write("<content><![CDATA[");
    while (source.Next_Block()) {
        RVString text;
        pBase64_Encode_File(source, text, nullptr);
        document.Write(text, static_cast<UINT>(text.GetLength()));
    }
    document.Write("]]></content>");
}

void Write_Document(SourceFile& source, NewFile& document, const std::string& path) {
    // What it is about to become depends on it, and somebody may have changed it since the check.
    class Checked : public CFile {
    public:
        explicit Checked(NewFile& target) : m_Target(target) {}
        void Write(const void* bytes, UINT count) override {
            m_Scan.Add(static_cast<const char*>(bytes), count);
            m_Target.Write(bytes, count);
        }
        bool Fits() const { return m_Scan.Fits(); }

    private:
        NewFile& m_Target;
        SectionScan m_Scan;
    };

    document.Write("<document><![CDATA[");
    Checked target(document);
    Copy(source, target);
    document.Write("]]></document>");
    if (!target.Fits())
        throw Failure(ExitCode::kFailed,
                      "cannot pack " + Quoted(path) + ": it was changed meanwhile; try again");
}

void Pack_One(const Input& input, bool nested, NewFile& document, Progress& progress) {
    SourceFile source(Openable(input.path), input.path, progress);
    document.Write("<attachment><name>" + Encode_Name(input.name) + "</name>");
    if (nested)
        Write_Document(source, document, input.path);
    else
        Write_Content(source, document);
    char rest[80];
    std::snprintf(rest, sizeof rest, "<size>%llu</size><crc32>%08x</crc32></attachment>\n",
                  static_cast<unsigned long long>(source.Seen().bytes),
                  static_cast<unsigned>(source.Seen().crc.Value()));
    document.Write(rest);
}

}  // namespace

void Pack(const std::string& out, const std::vector<std::string>& files) {
    const std::vector<Input> inputs = Check_Inputs(files);
    NewFile document(out, nullptr);
    Progress progress("packing");
    for (const Input& input : inputs)
        progress.Expect(input.length);
    Nesting nesting(progress);
    document.Write(kHead);
    std::uint64_t bytes = 0;
    for (const Input& input : inputs) {
        Pack_One(input, nesting.Is_For(input), document, progress);
        bytes += input.length;
    }
    document.Write(kTail);
    document.Keep();
    progress.Wipe();
    Print("packed " + Counted(inputs.size(), "file") + ", " + Grouped(bytes) + " bytes, into " +
          Quoted(out) + ", " + Grouped(document.Seen().bytes) + " bytes");
}

}  // namespace attachments
