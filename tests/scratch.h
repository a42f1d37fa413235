// A directory of a test's own, and whole files in it, past the layer that is tested.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

namespace rv_test {

// An empty directory that nobody else has; it goes with everything in it at the end.
class ScratchDirectory {
public:
    ScratchDirectory() {
        std::random_device random;
        do {
            m_Path =
                std::filesystem::temp_directory_path() / ("rv_test_" + std::to_string(random()));
        } while (!std::filesystem::create_directory(m_Path));
    }
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;
    ~ScratchDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(m_Path, ignored);
    }

    const std::filesystem::path& Path() const { return m_Path; }
    // The path of `name` in the directory.
    std::string operator/(std::string_view name) const {
        return (m_Path / name).make_preferred().string();
    }

private:
    std::filesystem::path m_Path;
};

inline void Write_File(const std::string& path, std::string_view content) {
    std::ofstream(path, std::ios::binary) << content;
}

// The whole file, "(none)" when it cannot be read.
inline std::string Read_File(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return "(none)";
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace rv_test
