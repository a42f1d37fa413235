#include <RVUtils/XmlParser.h>
#include <RVUtils/paths.h>

#include <cstdio>
#include <filesystem>
#include <set>

#include "commands.h"
#include "document.h"
#include "failure.h"
#include "names.h"

namespace attachments {
namespace {

namespace fs = std::filesystem;

std::string Below(const std::string& folder, const std::string& name) {
    const char last = folder.back();
    const bool separated = last == '/' || last == rv::kPathSeparator;
    return folder + (separated ? "" : std::string(1, rv::kPathSeparator)) + name;
}

// A folder that is there, or is made; one that was made goes again if nothing comes into it.
class TargetFolder {
public:
    explicit TargetFolder(const std::string& path) : m_Path(Path_Of(Openable(path))) {
        std::error_code error;
        m_Made = fs::create_directories(m_Path, error);
        if (error || !fs::is_directory(m_Path, error))
            throw Failure(ExitCode::kFailed, "cannot make the folder " + Quoted(path) + ": " +
                                                 error.message() + "; choose another one");
    }
    TargetFolder(const TargetFolder&) = delete;
    TargetFolder& operator=(const TargetFolder&) = delete;
    ~TargetFolder() {
        // What holds something is not removed.
        std::error_code error;
        if (m_Made) fs::remove(m_Path, error);
    }

private:
    fs::path m_Path;
    bool m_Made;
};

std::string Contents_Name(const std::string& name) {
    return name + ".contents";
}

void Check_Free(const std::string& path) {
    std::error_code error;
    if (fs::exists(fs::symlink_status(Path_Of(path), error)))
        throw Failure(ExitCode::kFailed, "cannot create " + Quoted(path) +
                                             ": it exists already; choose another folder");
}

// Before anything is written, so that a call that cannot succeed changes nothing.
void Check_Targets(const std::vector<Attachment>& attachments, const std::string& shown,
                   const std::string& folder) {
    std::set<std::string> names;
    for (const Attachment& attachment : attachments) {
        if (const char* const why = Why_Unsafe(attachment.name))
            throw Failure(ExitCode::kDamaged,
                          "cannot unpack " + Quoted(shown) + ": its attachment's name, " +
                              Quoted(attachment.name) + ", cannot be a file's here: " + why +
                              "; have it packed under another name");
        bool single = names.insert(attachment.name).second;
        Check_Free(Below(folder, attachment.name));
        if (attachment.is_document) {
            const std::string contents = Contents_Name(attachment.name);
            single = names.insert(contents).second && single;
            Check_Free(Below(folder, contents));
        }
        if (!single) throw Damaged(shown, "it has two files for " + Quoted(attachment.name));
    }
}

class Unpacking {
public:
    explicit Unpacking(Loading loading) : m_Loading(loading) {}

    void Write_All(RVXmlParser& parser, const std::string& shown, const std::string& folder,
                   int level) {
        const auto attachments = Read_Attachments(parser, shown, m_Loading.work);
        const TargetFolder target(folder);
        Check_Targets(attachments, shown, folder);
        for (const Attachment& attachment : attachments)
            Write_Or_Tell(attachment, shown + "/" + attachment.name, Below(folder, attachment.name),
                          level);
    }
    std::size_t Written() const { return m_Written; }
    std::size_t Damaged_Count() const { return m_Damaged; }
    std::uint64_t Bytes() const { return m_Bytes; }

private:
    void Write_Or_Tell(const Attachment& attachment, const std::string& shown,
                       const std::string& path, int level) try {
        m_Loading.progress.Expect(attachment.size);
        if (attachment.is_document)
            Write_Document(attachment, shown, path, level);
        else
            Write_Content(attachment, shown, path);
    } catch (const Failure& failure) {
        if (failure.Code() != ExitCode::kDamaged) throw;
        m_Loading.progress.Wipe();
        std::fprintf(stderr, "attachments: %s\n", failure.what());
        ++m_Damaged;
    }

    void Write_Content(const Attachment& attachment, const std::string& shown,
                       const std::string& path) {
        NewFile target(path, &m_Loading.progress);
        RVString body = attachment.body;
        if (Is_Whole(attachment)) pBase64_Decode_File(target, body);
        Keep_Sound(target, attachment, shown);
    }

    void Write_Document(const Attachment& attachment, const std::string& shown,
                        const std::string& path, int level) {
        {
            NewFile target(path, nullptr);
            const bool whole = Is_Whole(attachment);
            SourceFile body(Path_Of_Reference(attachment.body), shown, m_Loading.progress);
            if (whole) Copy(body, target);
            Keep_Sound(target, attachment, shown);
        }
        RVXmlParser parser;
        Load_Body(parser, attachment, shown, level, m_Loading);
        Write_All(parser, shown, Contents_Name(path), level + 1);
    }

    void Keep_Sound(NewFile& target, const Attachment& attachment, const std::string& shown) {
        if (target.Seen().bytes != attachment.size || target.Seen().crc.Value() != attachment.crc)
            throw Failure(ExitCode::kDamaged,
                          Quoted(shown) + " is damaged and left out; get a new copy of it");
        target.Keep();
        ++m_Written;
        m_Bytes += attachment.size;
    }

    Loading m_Loading;
    std::size_t m_Written = 0;
    std::size_t m_Damaged = 0;
    std::uint64_t m_Bytes = 0;
};

}  // namespace

void Unpack(const std::string& document, const std::string& folder) {
    WorkFolder work;
    Progress progress("unpacking");
    const Loading loading{work, progress};
    RVXmlParser parser;
    Load_Copy(parser, document, loading);
    Unpacking unpacking(loading);
    unpacking.Write_All(parser, document, folder, 1);
    progress.Wipe();
    Print("unpacked " + Counted(unpacking.Written(), "file") + ", " + Grouped(unpacking.Bytes()) +
          " bytes, into " + Quoted(folder));
    if (unpacking.Damaged_Count() > 0)
        throw Failure(ExitCode::kDamaged, Counted(unpacking.Damaged_Count(), "attachment") +
                                              " of " + Quoted(document) + " could not be unpacked");
}

}  // namespace attachments
