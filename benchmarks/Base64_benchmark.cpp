// The Base64 kernels beside OpenSSL's, the file functions beside the system's tools.

#include <RVUtils/XmlParser.h>
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "../xml/base64/codec.h"
#include "ratio_main.h"

#if defined(BENCH_WITH_OPENSSL)
#include <openssl/evp.h>
#endif

namespace {

namespace fs = std::filesystem;
using rv_bench::At_Most_Times;
using rv_bench::Set_Bar;

// OpenSSL looks at the processor when it is loaded, so its vector instructions are put out of its
// reach before this program starts anew.
__attribute__((constructor)) void Mask_Vectors(int, char** arguments, char**) {
    if (std::getenv("OPENSSL_ia32cap")) return;
    setenv("OPENSSL_ia32cap", "0:0", 1);
    execv("/proc/self/exe", arguments);
}

std::string Random_Bytes(std::size_t count) {
    std::mt19937_64 random(count);
    std::string bytes(count, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

unsigned char* Bytes_Of(std::string& text) {
    return reinterpret_cast<unsigned char*>(text.data());
}

// --- kernels -------------------------------------------------------------------------------------

struct Buffers {
    explicit Buffers(std::size_t characters)
        : bytes(Random_Bytes(characters / 4 * 3)), text(characters + 1, '\0') {
        rv::base64::kScalarCodec.m_Encode(Bytes_Of(bytes), characters / 4, text.data());
    }
    std::size_t Groups() const { return bytes.size() / 3; }

    std::string bytes;
    std::string text;  // and room for the NUL that OpenSSL writes
};

template <class Kernel>
void Run_Kernel(benchmark::State& state, std::size_t characters, Kernel kernel) {
    Buffers buffers(characters);
    for (auto _ : state) {
        kernel(buffers);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(characters));
}

template <class Kernel>
void Register_Kernel(const std::string& name, std::size_t characters, Kernel kernel) {
    benchmark::RegisterBenchmark(
        name.c_str(), [=](benchmark::State& state) { Run_Kernel(state, characters, kernel); });
}

// What is measured in memory has a bar; the size that stays in the cache is what files are read in.
bool Register_Codec(const rv::base64::Codec& codec, const char* size, std::size_t characters,
                    double least) {
    const std::string tail = std::string("_") + codec.m_Name + "_" + size;
    const std::string encode = "encode" + tail;
    const std::string decode = "decode" + tail;
    Register_Kernel(encode + "/ours", characters, [&codec](Buffers& buffers) {
        codec.m_Encode(Bytes_Of(buffers.bytes), buffers.Groups(), buffers.text.data());
    });
    Register_Kernel(decode + "/ours", characters, [&codec](Buffers& buffers) {
        benchmark::DoNotOptimize(
            codec.m_Decode(buffers.text.data(), buffers.Groups(), Bytes_Of(buffers.bytes)));
    });
#if defined(BENCH_WITH_OPENSSL)
    Register_Kernel(encode + "/openssl", characters, [](Buffers& buffers) {
        EVP_EncodeBlock(Bytes_Of(buffers.text), Bytes_Of(buffers.bytes),
                        static_cast<int>(buffers.bytes.size()));
    });
    Register_Kernel(decode + "/openssl", characters, [](Buffers& buffers) {
        benchmark::DoNotOptimize(EVP_DecodeBlock(Bytes_Of(buffers.bytes), Bytes_Of(buffers.text),
                                                 static_cast<int>(4 * buffers.Groups())));
    });
#endif
    return Set_Bar({encode, least, 0, {}}) && Set_Bar({decode, least, 0, {}});
}

const bool g_KernelsRegistered = [] {
    for (const rv::base64::Codec& codec : rv::base64::Codecs()) {
        const double least = codec.m_Encode == rv::base64::kScalarCodec.m_Encode ? 1 : 4;
        Register_Codec(codec, "64KB", 64 << 10, least);
        Register_Codec(codec, "64MB", 64 << 20, least);
    }
    return true;
}();

// --- files ---------------------------------------------------------------------------------------

constexpr std::size_t kTextSize = 350'000'000;
constexpr std::size_t kDecodedSize = kTextSize / 4 * 3;
constexpr std::size_t kSourceSize = 256 << 20;
constexpr std::size_t kEncodedSize = (kSourceSize + 2) / 3 * 4;

// Made at the first use, gone with the program.
class Files {
public:
    static const Files& Get() {
        static const Files files;
        return files;
    }
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;
    ~Files() { fs::remove_all(m_Folder); }

    std::string operator/(const char* name) const { return m_Folder / name; }

private:
    Files() : m_Folder(fs::temp_directory_path() / ("base64_bench_" + std::to_string(getpid()))) {
        fs::create_directory(m_Folder);
        const std::string bytes = Random_Bytes(kDecodedSize);
        std::string text(kTextSize, '\0');
        rv::base64::Best_Codec().m_Encode(reinterpret_cast<const unsigned char*>(bytes.data()),
                                          kTextSize / 4, text.data());
        Make("decoded", bytes);
        Make("text", text);
        std::string lines;
        lines.reserve(kTextSize / 76 * 77 + 77);
        for (std::size_t at = 0; at < text.size(); at += 76)
            lines.append(text, at, 76).append(1, '\n');
        Make("lines", lines);
        Make("source", std::string_view(text).substr(0, kSourceSize));
        text.resize(kEncodedSize, 'A');
        Make("encoded", text);
        // On the disk, so that nobody's turn is held up by what is written back.
        sync();
    }
    void Make(const char* name, std::string_view bytes) const {
        std::ofstream(m_Folder / name, std::ios::binary)
            .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }

    fs::path m_Folder;
};

// Each turn writes a new file: none pays for the pages of the one before.
template <class Work>
void Run_To_New_File(benchmark::State& state, Work work) {
    const std::string target = Files::Get() / "target";
    for (auto _ : state) {
        state.PauseTiming();
        fs::remove(target);
        state.ResumeTiming();
        work(target);
    }
    if (fs::file_size(target) != kDecodedSize) state.SkipWithError("the target is not whole");
    fs::remove(target);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(kDecodedSize));
}

void Decode_Reference(benchmark::State& state, const char* name) {
    const std::string used_up = Files::Get() / "used_up";
    Run_To_New_File(state, [&](const std::string& target) {
        // The reference is deleted each time; as a second name of the file that costs nothing.
        fs::create_hard_link(Files::Get() / name, used_up);
        CFile file(target.c_str(), CFile::modeCreate | CFile::modeWrite);
        RVString input(("FILE://" + used_up).c_str());
        pBase64_Decode_File(file, input);
        file.Close();
    });
}

// Runs a program with its output in `target`, when that is not null.
void Run_Program(benchmark::State& state, std::vector<std::string> words, const char* target) {
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (target)
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, target, O_CREAT | O_WRONLY, 0600);
    pid_t child = 0;
    int status = 1;
    if (posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ) != 0 ||
        waitpid(child, &status, 0) != child || status != 0)
        state.SkipWithError("the program failed");
    posix_spawn_file_actions_destroy(&actions);
}

void Copy_Decoded(benchmark::State& state) {
    Run_To_New_File(state, [&](const std::string& target) {
        Run_Program(state, {"cp", Files::Get() / "decoded", target}, nullptr);
    });
}

void Decode_By_Tool(benchmark::State& state, const char* name) {
    Run_To_New_File(state, [&](const std::string& target) {
        Run_Program(state, {"base64", "-d", Files::Get() / name}, target.c_str());
    });
}

void Encode_To_String(benchmark::State& state) {
    const std::string path = Files::Get() / "source";
    for (auto _ : state) {
        CFile source(path.c_str(), CFile::modeRead);
        RVString text;
        pBase64_Encode_File(source, text, nullptr);
        if (static_cast<std::size_t>(text.GetLength()) != kEncodedSize)
            state.SkipWithError("the text is not whole");
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(kEncodedSize));
}

void Read_To_String(benchmark::State& state) {
    const std::string path = Files::Get() / "encoded";
    for (auto _ : state) {
        const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        CString text;
        const ssize_t got =
            read(file, text.GetBuffer(static_cast<int>(kEncodedSize)), kEncodedSize);
        text.ReleaseBuffer(static_cast<int>(got));
        close(file);
        if (static_cast<std::size_t>(text.GetLength()) != kEncodedSize)
            state.SkipWithError("the text is not whole");
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(kEncodedSize));
}

const bool g_FilesRegistered = [] {
    const auto add = [](const char* name, auto... function_and_argument) {
        benchmark::RegisterBenchmark(name, function_and_argument...)->UseRealTime();
    };
    add("decode_350MB_file/ours", Decode_Reference, "text");
    add("decode_350MB_file/cp", Copy_Decoded);
    add("decode_350MB_file/base64 -d", Decode_By_Tool, "text");
    add("decode_350MB_lines/ours", Decode_Reference, "lines");
    add("decode_350MB_lines/base64 -d", Decode_By_Tool, "lines");
    add("encode_256MB_to_string/ours", Encode_To_String);
    add("encode_256MB_to_string/read", Read_To_String);
    return Set_Bar({"decode_350MB_file", At_Most_Times(1.25), 0, {"cp"}}) &&
           Set_Bar({"decode_350MB_file", 2.5, 0, {"base64 -d"}}) &&
           Set_Bar({"encode_256MB_to_string", At_Most_Times(1.5), 0, {"read"}});
}();

}  // namespace
