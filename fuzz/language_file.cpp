// A language file in memory: what was accepted is found again, and written in plain order it reads
// back as the same.
#include <RVUtils/LanguageFile.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace {

using rv::LanguageFile;

void Check(bool right) {
    if (!right) std::abort();
}

LanguageFile::Result Parse(LanguageFile& file, std::string_view text) {
    // An exact copy, so that a sanitizer sees a byte too many.
    rv::HeapText bytes(static_cast<char*>(rv::Heap_Allocate(text.size())));
    std::memcpy(bytes.get(), text.data(), text.size());
    CString fault;
    const LanguageFile::Result result = file.Parse(std::move(bytes), text.size(), "f", fault);
    Check((result == LanguageFile::Result::kRead) == fault.IsEmpty());
    return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    LanguageFile file;
    if (Parse(file, {reinterpret_cast<const char*>(data), size}) != LanguageFile::Result::kRead)
        return 0;
    std::string text;
    for (std::size_t i = 0; i < file.Count(); ++i) {
        const LanguageFile::Item item = file.At(i);
        Check(file.Find(item.module, item.string).data() == item.text.data());
        text += rv::Module_Name(item.module).GetString();
        text += '/' + std::to_string(item.string) + " = ";
        text += rv::Escaped_Text(item.text).GetString();
        text += '\n';
    }
    LanguageFile again;
    Check(Parse(again, text) == LanguageFile::Result::kRead);
    Check(again.Count() == file.Count());
    for (std::size_t i = 0; i < file.Count(); ++i)
        Check(again.At(i).text == file.At(i).text);
    return 0;
}
