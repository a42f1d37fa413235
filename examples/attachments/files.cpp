#include "files.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "failure.h"
#include "names.h"

namespace attachments {

SourceFile::SourceFile(const std::string& path, std::string shown, Progress& progress)
    : m_Shown(std::move(shown)), m_Progress(progress) {
    CFileException error;
    if (!Open(path.c_str(), modeRead | shareDenyWrite, &error))
        throw Failure_Of(new CFileException(error.m_cause, error.m_lOsError),
                         "cannot open " + Quoted(m_Shown));
    m_Length = CFile::GetLength();
}

bool SourceFile::Next_Block() {
    if (m_At_End) return false;
    m_Block_End = m_Seen.bytes + kBlock;
    return true;
}

UINT SourceFile::Read(void* buffer, UINT count) try {
    const auto wanted =
        static_cast<UINT>(std::min<std::uint64_t>(count, m_Block_End - m_Seen.bytes));
    if (wanted == 0) return 0;
    const UINT read = CFile::Read(buffer, wanted);
    m_At_End = read < wanted;
    m_Seen.bytes += read;
    m_Seen.crc.Add(buffer, read);
    m_Progress.Advance(read);
    return read;
} catch (CFileException* exception) {
    throw Failure_Of(exception, "cannot read " + Quoted(m_Shown));
}

ULONGLONG SourceFile::GetLength() const {
    const std::uint64_t stop = std::min(m_Length, m_Block_End);
    return stop > m_Seen.bytes ? stop - m_Seen.bytes : 0;
}

NewFile::NewFile(const std::string& path, Progress* progress, Purpose purpose)
    : m_Path(path), m_Progress(progress) {
    const bool temporary = purpose == Purpose::kTemporary;
    m_hFile = CreateFileA(Openable(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                          temporary ? FILE_ATTRIBUTE_TEMPORARY : FILE_ATTRIBUTE_NORMAL, nullptr);
    if (m_hFile == hFileNull) throw Last_Failure("cannot create " + Quoted(path));
}

NewFile::~NewFile() {
    if (m_Kept) return;
    Abort();
    DeleteFileA(Openable(m_Path).c_str());
}

void NewFile::Write(const void* buffer, UINT count) try {
    CFile::Write(buffer, count);
    m_Seen.bytes += count;
    m_Seen.crc.Add(buffer, count);
    if (m_Progress) m_Progress->Advance(count);
} catch (CFileException* exception) {
    throw Failure_Of(exception, "cannot write " + Quoted(m_Path));
}

void NewFile::Keep() try {
    Close();
    m_Kept = true;
} catch (CFileException* exception) {
    throw Failure_Of(exception, "cannot write " + Quoted(m_Path));
}

std::uint64_t Length_Of(const std::string& path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(Path_Of(path), error);
    if (std::filesystem::is_directory(status))
        throw Failure(ExitCode::kFailed,
                      "cannot read " + Quoted(path) + ": it is a folder; name the files in it");
    // What does not exist is left to the opening, which tells more.
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        throw Failure(ExitCode::kFailed,
                      "cannot read " + Quoted(path) + ": it is no file; name one of bytes on disk");
    CFileException refusal;
    CFile file;
    if (!file.Open(Openable(path).c_str(), CFile::modeRead | CFile::shareDenyNone, &refusal))
        throw Failure_Of(new CFileException(refusal.m_cause, refusal.m_lOsError),
                         "cannot open " + Quoted(path));
    return file.GetLength();
}

void Copy(SourceFile& source, CFile& target) {
    std::vector<char> buffer(256 * 1024);
    while (source.Next_Block())
        while (const UINT read = source.Read(buffer.data(), static_cast<UINT>(buffer.size())))
            target.Write(buffer.data(), read);
}

}  // namespace attachments
