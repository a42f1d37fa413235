#include "../system.h"

#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

namespace attachments {
namespace {

volatile sig_atomic_t g_Stop_Asked = 0;

void Note_Stop(int) {
    g_Stop_Asked = 1;
}

}  // namespace

bool Is_Watched() {
    return isatty(STDERR_FILENO) == 1;
}

bool Set_Temporary_Folder(const std::string& folder) {
    return setenv("TMPDIR", folder.c_str(), 1) == 0;
}

void Take_Signals() {
    signal(SIGPIPE, SIG_IGN);
    struct sigaction stop = {};
    stop.sa_handler = Note_Stop;
    stop.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before;
        // Who started the program may have told it to let a signal pass.
        if (sigaction(number, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
            sigaction(number, &stop, nullptr);
    }
}

bool Stop_Is_Asked() noexcept {
    return g_Stop_Asked != 0;
}

}  // namespace attachments
