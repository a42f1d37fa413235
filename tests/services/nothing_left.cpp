// Uses a name once, as any next process would, and tells what is left in shared memory that no
// process holds, and what is left in the directory of the tests' temporary files, which it clears.
// What others hold is theirs.
#include <RVUtils/CMutex.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

namespace {

bool Is_Held(const char* path) {
    const int file = open(path, O_RDWR | O_CLOEXEC);
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    const bool is_held =
        file == -1 || fcntl(file, F_OFD_GETLK, &lock) != 0 || lock.l_type != F_UNLCK;
    close(file);
    return is_held;
}

int Left(const std::filesystem::path& path) {
    std::printf("left: %s\n", path.c_str());
    return 1;
}

int Left_In_Shared_Memory() {
    int left = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/shm")) {
        const std::string path = entry.path();
        if (path.find("/rvutils-object-") != path.npos && !Is_Held(path.c_str()))
            left += Left(path);
    }
    return left;
}

int Left_In(const char* directory) {
    int left = 0;
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        left += Left(entry);
        std::filesystem::remove_all(entry);
    }
    return left;
}

}  // namespace

int main(int, char** words) {
    if (!CMutex(FALSE, "rv_test left").m_hObject) return 2;
    return Left_In_Shared_Memory() + Left_In(words[1]) == 0 ? 0 : 1;
}
