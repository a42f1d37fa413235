// How the program ends, and the one line that says why.
#pragma once

#include <RVUtils/CException.h>

#include <stdexcept>
#include <string>
#include <string_view>

namespace attachments {

enum class ExitCode {
    kDone = 0,
    kFailed = 1,    // the system refused something
    kUsage = 2,     // the call makes no sense
    kDamaged = 3,   // a document, or something in it, is not what it should be
    kStopped = 130  // the user stopped the program
};

// What ends the program, or the work on one attachment. The text is one line: what is wrong, where,
// and what to do.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& text) : std::runtime_error(text), m_Code(code) {}
    ExitCode Code() const { return m_Code; }

private:
    ExitCode m_Code;
};

// `doing` is what was tried, as in: cannot open "a". Ends the exception.
[[nodiscard]] Failure Failure_Of(CFileException* exception, const std::string& doing);

// The same for the failure that the system told last.
[[nodiscard]] Failure Last_Failure(const std::string& doing);

// A text from outside for one line of output: cut where it is long, and with everything that a
// terminal would act upon made visible.
[[nodiscard]] std::string Visible(std::string_view text);
// The same between quotes.
[[nodiscard]] std::string Quoted(std::string_view text);

}  // namespace attachments
