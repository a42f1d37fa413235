// Packs files into a document, lists what a document carries, and gives every file back.

#include <RVUtils/CException.h>

#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "commands.h"
#include "failure.h"
#include "system.h"

namespace attachments {
namespace {

constexpr char kUsage[] =
    "usage: attachments pack OUT.xml FILE...   write a document that carries the files\n"
    "       attachments list DOC.xml           print the tree of what it carries, with sizes\n"
    "       attachments unpack DOC.xml DIR     write the files it carries into DIR\n"
    "\n"
    "No file is ever overwritten, and the document stays as it is. A file that is such a\n"
    "document itself is nested; unpack gives it back, and its own files beside it in\n"
    "NAME.contents.\n"
    "Ends with 0: done; 1: the system refused something; 2: wrong call; 3: a document or\n"
    "an attachment is damaged; 130: stopped.\n";

using Arguments = std::vector<std::string>;

void Check_Usage(const Arguments& arguments) {
    bool fits = false;
    if (!arguments.empty()) {
        const std::string& verb = arguments[0];
        fits = (verb == "pack" && arguments.size() >= 3) ||
               (verb == "list" && arguments.size() == 2) ||
               (verb == "unpack" && arguments.size() == 3);
    }
    for (const std::string& argument : arguments)
        fits = fits && !argument.empty();
    if (!fits)
        throw Failure(ExitCode::kUsage,
                      "call it as pack OUT.xml FILE..., list DOC.xml, or unpack DOC.xml DIR; "
                      "--help tells more");
}

void Run(const Arguments& arguments) {
    if (arguments.size() == 1 && (arguments[0] == "--help" || arguments[0] == "-h"))
        return Print(kUsage);
    Check_Usage(arguments);
    if (arguments[0] == "pack")
        Pack(arguments[1], {arguments.begin() + 2, arguments.end()});
    else if (arguments[0] == "list")
        List(arguments[1]);
    else
        Unpack(arguments[1], arguments[2]);
    if (std::fflush(stdout) != 0)
        throw Failure(ExitCode::kFailed, "cannot write the result; look where the output goes");
}

int Tell(ExitCode code, const std::string& text) {
    std::fprintf(stderr, "attachments: %s\n", text.c_str());
    return static_cast<int>(code);
}

int Guarded_Run(const Arguments& arguments) try {
    Run(arguments);
    return 0;
} catch (const Failure& failure) {
    return Tell(failure.Code(), failure.what());
} catch (CMemoryException* exhausted) {
    exhausted->Delete();
    return Tell(ExitCode::kFailed, "there is not enough memory; close some programs");
} catch (CFileException* exception) {
    return Tell(ExitCode::kFailed, Failure_Of(exception, "a file operation failed").what());
} catch (const std::bad_alloc&) {
    return Tell(ExitCode::kFailed, "there is not enough memory; close some programs");
} catch (const std::exception& exception) {
    return Tell(ExitCode::kFailed, exception.what());
}

}  // namespace

}  // namespace attachments

int main(int count, char** arguments) {
    attachments::Take_Signals();
    return attachments::Guarded_Run({arguments + (count > 0 ? 1 : 0), arguments + count});
}
