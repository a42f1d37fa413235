// A disk that is full, as far as a process on Linux can have one.
#pragma once

#include <sys/resource.h>

namespace rv_test {

// No file may grow beyond this while one lives.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &m_Before);
        const rlimit limit{bytes, m_Before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_Before); }

private:
    rlimit m_Before;
};

}  // namespace rv_test
