#include "failure.h"

#include <RVUtils/winapi.h>

#include <cstdio>

namespace attachments {
namespace {

constexpr std::size_t kLongestShown = 300;

const char* Reason(int cause) {
    switch (cause) {
        case CFileException::fileNotFound:
            return "it does not exist; check the name";
        case CFileException::badPath:
            return "the folder does not exist; check the path";
        case CFileException::accessDenied:
            return "access is denied; check the rights, and that it is no folder";
        case CFileException::sharingViolation:
        case CFileException::lockViolation:
            return "another program uses it; close that one";
        case CFileException::tooManyOpenFiles:
            return "too many files are open; close some programs";
        case CFileException::diskFull:
            return "there is no room left; free some space";
        case CFileException::hardIO:
            return "the device failed; try another one";
        default:
            return nullptr;
    }
}

Failure Failed(const std::string& doing, int cause, LONG os_error) {
    const char* const reason = Reason(cause);
    return Failure(
        ExitCode::kFailed,
        doing + ": " + (reason ? reason : "the system's error number " + std::to_string(os_error)));
}

}  // namespace

Failure Failure_Of(CFileException* exception, const std::string& doing) {
    const int cause = exception->m_cause;
    const LONG os_error = exception->m_lOsError;
    exception->Delete();
    return Failed(doing, cause, os_error);
}

Failure Last_Failure(const std::string& doing) {
    const auto os_error = static_cast<LONG>(GetLastError());
    if (os_error == ERROR_FILE_EXISTS || os_error == ERROR_ALREADY_EXISTS)
        return Failure(ExitCode::kFailed,
                       doing + ": it exists already; choose another name, or move it away");
    return Failed(doing, CFileException::OsErrorToException(os_error), os_error);
}

std::string Visible(std::string_view text) {
    std::string shown;
    for (const char character : text.substr(0, kLongestShown)) {
        const auto byte = static_cast<unsigned char>(character);
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned>(byte));
        if (byte < 0x20 || byte == 0x7F)
            shown += escape;
        else
            shown += character;
    }
    return text.size() > kLongestShown ? shown + "..." : shown;
}

std::string Quoted(std::string_view text) {
    return '"' + Visible(text) + '"';
}

}  // namespace attachments
