// What a translator starts from, and what is still to be done.
//
//     translate export LIBRARY FILE [MODULE]
//         writes a language file with every string of the library, each behind its original
//     translate check LIBRARY FILE [MODULE]
//         lists the strings that the file lacks, and those that the library has no more
//
// MODULE is the number under which the strings are asked for; without one they are the
// application's own. No file is overwritten. Ends with 0: done, and complete; 1: the system refused
// something; 2: wrong call; 3: the translation is incomplete, or its file damaged.

#include <RVUtils/CFile.h>
#include <RVUtils/LanguageFile.h>
#include <RVUtils/RVString.h>
#include <RVUtils/utf8_text.h>

#include <charconv>
#include <cstdio>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

enum class ExitCode { kDone = 0, kFailed = 1, kUsage = 2, kIncomplete = 3 };

// What ends the program: one line that says what is wrong, where, and what to do.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& text) : std::runtime_error(text), m_Code(code) {}
    ExitCode Code() const { return m_Code; }

private:
    ExitCode m_Code;
};

using Strings = std::map<ULONG, std::string>;  // by number, in UTF-8

class Library {
public:
    explicit Library(const char* path) : m_Module(LoadLibraryA(path)) {
        if (!m_Module)
            throw Failure(ExitCode::kFailed, std::string(path) +
                                                 ": cannot be loaded, or has no resources; check "
                                                 "that it is a shared library");
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library() { FreeLibrary(m_Module); }

    Strings All_Strings() const {
        constexpr ULONG kLargest = 0xFFFF;
        Strings strings;
        RVString text;
        for (ULONG id = 0; id <= kLargest; ++id)
            if (text.Load_String(m_Module, id)) strings[id] = Utf8_Of(text);
        return strings;
    }

private:
    static std::string Utf8_Of(const RVString& text) {
        std::string utf8(3 * static_cast<std::size_t>(text.GetLength()), '\0');
        const int length =
            rv::Utf8_From_Text(text, text.GetLength(), utf8.data(), static_cast<int>(utf8.size()));
        utf8.resize(static_cast<std::size_t>(length < 0 ? 0 : length));
        return utf8;
    }

    HMODULE m_Module;
};

std::string Item(ULONG module, ULONG id) {
    return std::string(rv::Module_Name(module)) + '/' + std::to_string(id);
}

void Export(const Strings& strings, ULONG module, const char* path) {
    HANDLE const handle =
        CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        throw Failure(ExitCode::kFailed,
                      std::string(path) +
                          ": cannot be made; check the path, and move away a file "
                          "that is there");
    CFile file(handle);
    std::string text =
        "# Each string stands behind its original: write the translation behind the \"=\".\n";
    for (const auto& [id, original] : strings) {
        text += "\n# " + std::string(rv::Escaped_Text(original)) + '\n';
        text += Item(module, id) + " =\n";
    }
    file.Write(text.data(), static_cast<UINT>(text.size()));
    file.Close();
}

// Gives how many strings are to be looked at.
int Check(const Strings& strings, ULONG module, const char* path) {
    rv::LanguageFile file;
    CString fault;
    switch (file.Read(path, fault)) {
        case rv::LanguageFile::Result::kMissing:
            throw Failure(ExitCode::kFailed,
                          std::string(path) + ": does not exist; check the name");
        case rv::LanguageFile::Result::kRefused:
            throw Failure(ExitCode::kIncomplete, fault.GetString());
        case rv::LanguageFile::Result::kRead:
            break;
    }
    int count = 0;
    const auto tell = [&](ULONG id, const char* what, std::string_view text) {
        std::printf("%s: %s: %s\n", Item(module, id).c_str(), what,
                    rv::Escaped_Text(text).GetString());
        ++count;
    };
    for (const auto& [id, original] : strings)
        if (file.Find(module, id).empty()) tell(id, "not translated", original);
    for (std::size_t i = 0; i < file.Count(); ++i) {
        const rv::LanguageFile::Item item = file.At(i);
        if (item.module == module && !strings.contains(item.string))
            tell(item.string, "not in the library", item.text);
    }
    return count;
}

ULONG Number_Of(std::string_view text) {
    ULONG number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size())
        throw Failure(ExitCode::kUsage, std::string(text) +
                                            ": is no module's number; write one up "
                                            "to 4294967295");
    return number;
}

ExitCode Run(int count, char** arguments) {
    const std::string_view verb = count > 1 ? arguments[1] : "";
    if ((count != 4 && count != 5) || (verb != "export" && verb != "check"))
        throw Failure(ExitCode::kUsage,
                      "call it as export LIBRARY FILE [MODULE], or check LIBRARY FILE [MODULE]");
    const ULONG module = count == 5 ? Number_Of(arguments[4]) : rv::kApplicationModule;
    const Strings strings = Library(arguments[2]).All_Strings();
    if (verb == "check")
        return Check(strings, module, arguments[3]) ? ExitCode::kIncomplete : ExitCode::kDone;
    Export(strings, module, arguments[3]);
    return ExitCode::kDone;
}

int Tell(ExitCode code, const char* text) {
    std::fprintf(stderr, "translate: %s\n", text);
    return static_cast<int>(code);
}

}  // namespace

int main(int count, char** arguments) try {
    return static_cast<int>(Run(count, arguments));
} catch (const Failure& failure) {
    return Tell(failure.Code(), failure.what());
} catch (CMemoryException* error) {
    error->Delete();
    return Tell(ExitCode::kFailed, "there is not enough memory; close some programs");
} catch (CFileException* error) {
    error->Delete();
    return Tell(ExitCode::kFailed, "the file cannot be written; check the free space");
} catch (const std::exception& error) {
    return Tell(ExitCode::kFailed, error.what());
}
