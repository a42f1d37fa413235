// Gives an environment variable another value for as long as one lives. Not for several threads.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace rv_test {

class Environment {
public:
    Environment(const char* name, const std::string& value) : m_Name(name) {
        if (const char* before = std::getenv(name)) m_Before = before;
        Set(value.c_str());
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() { Set(m_Before ? m_Before->c_str() : nullptr); }

private:
    void Set(const char* value) {
#if defined(_WIN32)
        _putenv_s(m_Name, value ? value : "");
#else
        if (value) {
            setenv(m_Name, value, 1);
        } else {
            unsetenv(m_Name);
        }
#endif
    }

    const char* m_Name;
    std::optional<std::string> m_Before;
};

// The directory that temporary files go to, on either platform.
class TempDirectory {
public:
    explicit TempDirectory(const std::string& path)
        : m_Native("TMPDIR", path), m_First("TMP", path), m_Second("TEMP", path) {}

private:
    Environment m_Native;
    Environment m_First;
    Environment m_Second;
};

}  // namespace rv_test
