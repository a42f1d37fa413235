#include "names.h"

#include <RVUtils/paths.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <string_view>

#include "failure.h"

namespace attachments {
namespace {

// Backslashes, drives and devices are the system's own here.
constexpr bool kDosNames = rv::kPathSeparator == '\\';

constexpr std::array<std::string_view, 22> kDevices = {
    "CON",  "PRN",  "AUX",  "NUL",  "COM1", "COM2", "COM3", "COM4", "COM5", "COM6", "COM7",
    "COM8", "COM9", "LPT1", "LPT2", "LPT3", "LPT4", "LPT5", "LPT6", "LPT7", "LPT8", "LPT9"};

bool Is_Device(const std::string& name) {
    std::string stem = name.substr(0, name.find('.'));
    stem.erase(stem.find_last_not_of(' ') + 1);
    std::transform(stem.begin(), stem.end(), stem.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    });
    return std::find(kDevices.begin(), kDevices.end(), stem) != kDevices.end();
}

const char* Why_Unsafe_In_Dos(const std::string& name) {
    const bool control = std::any_of(name.begin(), name.end(), [](char character) {
        return static_cast<unsigned char>(character) < 0x20;
    });
    if (control || name.find_first_of("<>:\"|?*") != std::string::npos)
        return "it holds a character that file names cannot have here";
    if (name.back() == '.' || name.back() == ' ') return "it ends in a dot or a blank";
    return Is_Device(name) ? "it is the name of a device" : nullptr;
}

bool Is_Plain(unsigned char byte) {
    return byte > 0x20 && byte != 0x7F && byte != '<' && byte != '>' && byte != '%' && byte != '&';
}

}  // namespace

std::filesystem::path Path_Of(const std::string& text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

std::string Text_Of(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return std::string(text.begin(), text.end());
}

std::string Openable(const std::string& path) {
    if constexpr (kDosNames) return path;
    if (path.find('\\') != std::string::npos)
        throw Failure(ExitCode::kFailed, "cannot use " + Quoted(path) +
                                             ": it holds a backslash; rename the file or folder");
    // A letter and a colon in front would be a drive.
    return path.starts_with('/') ? path : "./" + path;
}

std::string Base_Name(const std::string& path) {
    const std::size_t separator = path.find_last_of(kDosNames ? "/\\:" : "/");
    return separator == std::string::npos ? path : path.substr(separator + 1);
}

const char* Why_Unsafe(const std::string& name) {
    if (name.empty()) return "it is empty";
    if (name == "." || name == "..") return "it is a folder's";
    if (name.find_first_of(std::string_view("/\\\0", 3)) != std::string::npos)
        return "it leads out of the folder";
    return kDosNames ? Why_Unsafe_In_Dos(name) : nullptr;
}

std::string Encode_Name(const std::string& name) {
    std::string text;
    for (const char character : name) {
        const auto byte = static_cast<unsigned char>(character);
        char escape[4];
        std::snprintf(escape, sizeof escape, "%%%02X", static_cast<unsigned>(byte));
        if (Is_Plain(byte))
            text += character;
        else
            text += escape;
    }
    return text;
}

bool Decode_Name(const std::string& text, std::string& name) {
    name.clear();
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] != '%') {
            name += text[index];
            continue;
        }
        const char* const digits = text.data() + index + 1;
        unsigned byte = 0;
        if (text.size() - index < 3 ||
            std::from_chars(digits, digits + 2, byte, 16).ptr != digits + 2)
            return false;
        name += static_cast<char>(byte);
        index += 2;
    }
    return true;
}

}  // namespace attachments
