// The names of attachments: on disk, and as element text of a document.
#pragma once

#include <filesystem>
#include <string>

namespace attachments {

// A path as the user gave it, for the standard library's file system operations. Its bytes are
// UTF-8 where the platform cares.
[[nodiscard]] std::filesystem::path Path_Of(const std::string& text);

// The inverse.
[[nodiscard]] std::string Text_Of(const std::filesystem::path& path);

// The same path as the library's file operations take it. Throws Failure for a path that they would
// take for another one.
[[nodiscard]] std::string Openable(const std::string& path);

// The last level of a path.
[[nodiscard]] std::string Base_Name(const std::string& path);

// Why a file must not be made under this name inside of a folder, null if it may.
[[nodiscard]] const char* Why_Unsafe(const std::string& name);

// The name as element text: "%" and two hexadecimal digits stand for every byte that the dialect
// drops, trims or acts upon.
[[nodiscard]] std::string Encode_Name(const std::string& name);

// The inverse. False for a text that no name has; `name` is then undefined.
[[nodiscard]] bool Decode_Name(const std::string& text, std::string& name);

}  // namespace attachments
