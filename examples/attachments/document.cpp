#include "document.h"

#include <RVUtils/ErrorSink.h>

#include <atomic>
#include <charconv>
#include <chrono>
#include <future>
#include <string_view>

#include "failure.h"
#include "names.h"
#include "tree_walk.h"

namespace attachments {
namespace {

// Notes that something was reported instead of printing it: the program has a line of its own.
class QuietReports {
public:
    QuietReports() : m_Before(pSet_Programmer_Error_Sink({&Note, &Ignore, this})) {}
    QuietReports(const QuietReports&) = delete;
    QuietReports& operator=(const QuietReports&) = delete;
    ~QuietReports() { pSet_Programmer_Error_Sink(m_Before); }
    bool Any() const { return m_Any; }

private:
    static void Note(void* self, unsigned int, const char*, ULONG) {
        static_cast<QuietReports*>(self)->m_Any = true;
    }
    static void Ignore(void*, ULONG, const char*) {}

    std::atomic<bool> m_Any = false;
    RVErrorSink m_Before;
};

// Loads on a second thread while this one shows how much the work folder has grown.
bool Load_Watched(RVXmlParser& parser, const RVString& reference, Loading loading) {
    if (!loading.progress.Is_Shown()) return parser.Load_File(reference);
    const std::uint64_t before = loading.work.Size();
    auto result = std::async(std::launch::async, [&] { return parser.Load_File(reference); });
    while (result.wait_for(std::chrono::milliseconds(200)) != std::future_status::ready) {
        const std::uint64_t now = loading.work.Size();
        loading.progress.Glance(now > before ? now - before : 0);
    }
    return result.get();
}

void Load(RVXmlParser& parser, const std::string& path, const std::string& shown, Loading loading) {
    const QuietReports reports;
    const std::string trouble =
        "cannot read " + Quoted(shown) + " with temporary files in " + Quoted(loading.work.Path());
    try {
        if (Load_Watched(parser, RVString(("FILE://" + path).c_str()), loading)) return;
    } catch (CFileException* exception) {
        throw Failure_Of(exception, trouble);
    }
    if (reports.Any())
        throw Failure(ExitCode::kFailed, trouble + "; check that there is room and try again");
    throw Damaged(shown, "its tags do not fit each other");
}

template <class Number>
bool Read_Number(const RVString& text, Number& number, int base) {
    const char* const end = text.GetString() + text.GetLength();
    const auto read = std::from_chars(text.GetString(), end, number, base);
    return read.ec == std::errc() && read.ptr == end && !text.IsEmpty();
}

// Puts the elements of one attachment together.
class Collector {
public:
    Collector(const std::string& shown, const WorkFolder& work) : m_Shown(shown), m_Work(work) {}

    void Take(const Element& element) {
        if (!element.closed) throw Damaged(m_Shown, "it is cut short");
        if (element.depth == 0 && !m_Rooted && element.name == "attachments")
            m_Rooted = true;
        else if (element.depth == 1 && element.name == "attachment")
            Begin();
        else if (element.depth == 2)
            Take_Part(element);
        else
            throw Damaged(m_Shown, "nobody knows its element " + Quoted(element.name.GetString()));
    }

    std::vector<Attachment> Finish() {
        End();
        return std::move(m_Attachments);
    }

private:
    enum Part : unsigned { kName = 1, kBody = 2, kSize = 4, kCrc = 8, kAll = 15 };

    void Begin() {
        End();
        m_Attachments.emplace_back();
        m_Parts = 0;
    }

    void End() const {
        if (!m_Attachments.empty() && m_Parts != kAll) Refuse("is not complete");
    }

    void Take_Part(const Element& element) {
        Attachment& attachment = m_Attachments.back();
        const RVString& value = element.value;
        if (element.name == "name") {
            Note(kName, Decode_Name(std::string(value, static_cast<std::size_t>(value.GetLength())),
                                    attachment.name));
        } else if (element.name == "content" || element.name == "document") {
            attachment.is_document = element.name == "document";
            attachment.body = value;
            Note(kBody, m_Work.Holds(value));
        } else if (element.name == "size") {
            Note(kSize, Read_Number(value, attachment.size, 10));
        } else if (element.name == "crc32") {
            Note(kCrc, Read_Number(value, attachment.crc, 16));
        }
    }

    void Note(Part part, bool sound) {
        if (!sound || (m_Parts & part)) Refuse("is not as it was made");
        m_Parts |= part;
    }

    [[noreturn]] void Refuse(const char* why) const {
        throw Damaged(m_Shown,
                      "its attachment number " + std::to_string(m_Attachments.size()) + " " + why);
    }

    const std::string& m_Shown;
    const WorkFolder& m_Work;
    bool m_Rooted = false;
    unsigned m_Parts = 0;
    std::vector<Attachment> m_Attachments;
};

}  // namespace

Failure Damaged(const std::string& shown, const std::string& why) {
    return Failure(ExitCode::kDamaged,
                   Quoted(shown) + " is no sound document: " + why + "; get a new copy of it");
}

void Load_Copy(RVXmlParser& parser, const std::string& path, Loading loading) {
    const std::uint64_t length = Length_Of(path);
    loading.progress.Expect(2 * length);
    const std::string copy_path = loading.work.New_Path();
    {
        SourceFile document(Openable(path), path, loading.progress);
        NewFile copy(copy_path, nullptr, NewFile::Purpose::kTemporary);
        Copy(document, copy);
        copy.Keep();
    }
    Load(parser, copy_path, path, loading);
    loading.progress.Advance(length);
    loading.progress.Wipe();
}

void Load_Body(RVXmlParser& parser, const Attachment& attachment, const std::string& shown,
               int level, Loading loading) {
    if (level > kDeepest)
        throw Failure(ExitCode::kDamaged, Quoted(shown) + " is more than " +
                                              std::to_string(kDeepest) +
                                              " documents deep; unpack the outer ones one by one");
    loading.progress.Expect(attachment.size);
    Load(parser, Path_Of_Reference(attachment.body), shown, loading);
    loading.progress.Advance(attachment.size);
    loading.progress.Wipe();
}

std::vector<Attachment> Read_Attachments(RVXmlParser& parser, const std::string& shown,
                                         const WorkFolder& work) {
    if (!Carries_Files(parser))
        throw Failure(ExitCode::kDamaged,
                      Quoted(shown) + " carries no attachments; name a document made by pack");
    Collector collector(shown, work);
    TreeWalk walk(parser);
    for (Element element; walk.Next(element);)
        collector.Take(element);
    return collector.Finish();
}

bool Carries_Files(RVXmlParser& parser) {
    RVString name;
    RVString value;
    ULONG children = 0;
    parser.Reset();
    const bool carries = parser.Next(name, value, children) && name == "attachments";
    parser.Reset();
    return carries;
}

std::uint64_t Body_Length(const Attachment& attachment) {
    if (attachment.is_document) return attachment.size;
    return attachment.size / 3 * 4 + (attachment.size % 3 != 0 ? 4 : 0);
}

bool Is_Whole(const Attachment& attachment) {
    CFile body;
    return body.Open(Path_Of_Reference(attachment.body).c_str(), CFile::modeRead) &&
           body.GetLength() == Body_Length(attachment);
}

void Discard(const Attachment& attachment) {
    DeleteFileA(Path_Of_Reference(attachment.body).c_str());
}

}  // namespace attachments
