// The languages of user interfaces.
#pragma once

#include "../export.h"
#include "types.h"

using LANGID = WORD;

// The number of the user's language: of the locale that LC_ALL, else LC_MESSAGES, else LANG names.
// The first that is not empty counts.
//
// A name such as "de_AT.UTF-8" stands for its language and country; where that country has no
// number of its own, for the language in its usual country. C, POSIX, a language without a number,
// and no name at all are 0x409, English of the United States. Any thread, as long as none changes
// the environment meanwhile.
[[nodiscard]] RVPLATFORM_API LANGID GetUserDefaultUILanguage() noexcept;

// The same of the locale that the system was set up with: of LANG in /etc/locale.conf, or in
// /etc/default/locale.
[[nodiscard]] RVPLATFORM_API LANGID GetSystemDefaultUILanguage() noexcept;
