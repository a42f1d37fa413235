// The few things that the standard library has no word for; one body a platform.
#pragma once

#include <string>

namespace attachments {

// Whether the standard error stream is a terminal that a person looks at.
[[nodiscard]] bool Is_Watched();

// Makes `folder` the directory for temporary files of this process, the library's among them. False
// when the system refuses.
[[nodiscard]] bool Set_Temporary_Folder(const std::string& folder);

// Turns the signals that would end the program without a word into failed writes, and those by
// which a user stops it into Stop_Is_Asked.
void Take_Signals();

// Whether the user asked the program to stop. A second request ends it at once.
[[nodiscard]] bool Stop_Is_Asked() noexcept;

}  // namespace attachments
