// Programs that a test starts, talks to and ends.
#pragma once

#if defined(_WIN32)
#include <RVUtils/winapi.h>
#else
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <chrono>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace rv_test {

// Longer than anything that a test waits for takes, also on a busy machine.
constexpr std::chrono::seconds kLimit(60);

// A process of a program that stands beside the test's own. Its standard input and output are the
// test's to write and read; its standard error is the test's own. It is killed with the object, so
// that nothing outlives a test that failed.
//
//     ChildProcess child("tests_services_child", {"hold", guid});
//     ASSERT_EQ(child.Read(), 'h');
//     child.Kill();
class ChildProcess {
public:
    // Throws std::runtime_error when it cannot be started. Arguments hold neither quotes nor
    // backslashes.
    ChildProcess(const std::string& program, const std::vector<std::string>& arguments);
    ChildProcess(ChildProcess&& other) noexcept
        : m_Process(std::exchange(other.m_Process, {})),
          m_Input(std::exchange(other.m_Input, kNoFile)),
          m_Output(std::exchange(other.m_Output, kNoFile)) {}
    ChildProcess& operator=(ChildProcess&& other) noexcept {
        std::swap(m_Process, other.m_Process);
        std::swap(m_Input, other.m_Input);
        std::swap(m_Output, other.m_Output);
        return *this;
    }
    ~ChildProcess() {
        Kill();
        Close(m_Input);
        Close(m_Output);
    }

    // The next byte that it writes. Nothing when it ends, or the limit has passed, before one
    // comes.
    std::optional<char> Read(std::chrono::milliseconds limit = kLimit);
    // Whether it could be written.
    bool Write(char byte);
    // Ends it wherever it stands, without any clean-up of its own, and waits until it is gone.
    void Kill();
    // Its exit code. Nothing when it was killed, or does not end within the limit.
    std::optional<int> Wait(std::chrono::milliseconds limit = kLimit);

private:
#if defined(_WIN32)
    using Process = HANDLE;
    using File = HANDLE;
    static inline const File kNoFile = nullptr;
    static constexpr UINT kKilled = 0xDEAD;
#else
    using Process = pid_t;
    using File = int;
    static constexpr File kNoFile = -1;
#endif
    static void Close(File file);

    Process m_Process = {};
    File m_Input = kNoFile;   // what the test writes to
    File m_Output = kNoFile;  // what the test reads from
};

#if defined(_WIN32)

inline void ChildProcess::Close(File file) {
    if (file) CloseHandle(file);
}

inline ChildProcess::ChildProcess(const std::string& program,
                                  const std::vector<std::string>& arguments) {
    char self[MAX_PATH];
    GetModuleFileNameA(nullptr, self, MAX_PATH);
    const auto path = std::filesystem::path(self).replace_filename(program + ".exe").string();
    std::string command = '"' + path + '"';
    for (const std::string& argument : arguments)
        command += " \"" + argument + '"';
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    STARTUPINFOA start = {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    CreatePipe(&start.hStdInput, &m_Input, &inherited, 0);
    CreatePipe(&m_Output, &start.hStdOutput, &inherited, 0);
    SetHandleInformation(m_Input, HANDLE_FLAG_INHERIT, 0);
    SetHandleInformation(m_Output, HANDLE_FLAG_INHERIT, 0);
    PROCESS_INFORMATION process = {};
    const BOOL started = CreateProcessA(path.c_str(), command.data(), nullptr, nullptr, TRUE, 0,
                                        nullptr, nullptr, &start, &process);
    Close(start.hStdInput);
    Close(start.hStdOutput);
    Close(process.hThread);
    m_Process = process.hProcess;
    if (!started) throw std::runtime_error("cannot start " + path);
}

inline std::optional<char> ChildProcess::Read(std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    DWORD there = 0;
    while (PeekNamedPipe(m_Output, nullptr, 0, nullptr, &there, nullptr) && there == 0) {
        if (std::chrono::steady_clock::now() > end) return std::nullopt;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    char byte;
    if (there == 0 || !ReadFile(m_Output, &byte, 1, &there, nullptr)) return std::nullopt;
    return byte;
}

inline bool ChildProcess::Write(char byte) {
    DWORD written;
    return WriteFile(m_Input, &byte, 1, &written, nullptr);
}

inline void ChildProcess::Kill() {
    if (!m_Process) return;
    TerminateProcess(m_Process, kKilled);
    Wait();
}

inline std::optional<int> ChildProcess::Wait(std::chrono::milliseconds limit) {
    DWORD code = kKilled;
    if (WaitForSingleObject(m_Process, static_cast<DWORD>(limit.count())) != WAIT_OBJECT_0)
        return std::nullopt;
    GetExitCodeProcess(m_Process, &code);
    CloseHandle(std::exchange(m_Process, nullptr));
    if (code == kKilled) return std::nullopt;
    return static_cast<int>(code);
}

#else

inline void ChildProcess::Close(File file) {
    if (file != kNoFile) close(file);
}

inline ChildProcess::ChildProcess(const std::string& program,
                                  const std::vector<std::string>& arguments) {
    const auto path = std::filesystem::read_symlink("/proc/self/exe").replace_filename(program);
    std::vector<char*> words = {const_cast<char*>(path.c_str())};
    for (const std::string& argument : arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        throw std::runtime_error("no socket");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    const int error =
        posix_spawn(&m_Process, path.c_str(), &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    m_Output = ends[0];
    if (error == 0) return;
    close(ends[0]);
    throw std::runtime_error("cannot start " + path.string());
}

inline std::optional<char> ChildProcess::Read(std::chrono::milliseconds limit) {
    pollfd output = {m_Output, POLLIN, 0};
    char byte;
    if (poll(&output, 1, static_cast<int>(limit.count())) != 1 || read(m_Output, &byte, 1) != 1)
        return std::nullopt;
    return byte;
}

inline bool ChildProcess::Write(char byte) {
    return send(m_Output, &byte, 1, MSG_NOSIGNAL) == 1;
}

inline void ChildProcess::Kill() {
    if (m_Process == 0) return;
    kill(m_Process, SIGKILL);
    Wait();
}

inline std::optional<int> ChildProcess::Wait(std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    int status;
    while (waitpid(m_Process, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > end) return std::nullopt;
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    m_Process = 0;
    if (!WIFEXITED(status)) return std::nullopt;
    return WEXITSTATUS(status);
}

#endif

}  // namespace rv_test
