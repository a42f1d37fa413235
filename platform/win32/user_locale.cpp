#include "user_locale.h"

#include <langinfo.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <mutex>
#include <new>

#include "../heap.h"

namespace {

using rv::Field;
using rv::LocaleWords;
using rv::Pattern;
using rv::PatternToken;
using rv::UserLocale;
using std::string_view;

// ---- patterns that can be relied on -------------------------------------------------------------

bool Is_Digit(char c) noexcept {
    return c >= '0' && c <= '9';
}

bool Is_Name(Field field) noexcept {
    return field == Field::kMonthName || field == Field::kWeekday || field == Field::kHalf;
}

bool Equal_Words(string_view a, string_view b) noexcept {
    return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

bool Are_Distinct(rv::NameList names) noexcept {
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (names[i].empty()) return false;
        for (std::size_t j = 0; j < i; ++j)
            if (Equal_Words(names[i], names[j])) return false;
    }
    return true;
}

// Whether a reader can tell where one ends and the other begins.
bool Are_Apart(const PatternToken& token, const PatternToken& next) noexcept {
    if (token.field == Field::kLiteral)
        return Is_Name(next.field) || next.field == Field::kLiteral || !Is_Digit(token.text.back());
    if (next.field == Field::kLiteral) return Is_Name(token.field) || !Is_Digit(next.text.front());
    return Is_Name(token.field) && !Is_Name(next.field);
}

bool Are_Fields_Apart(const Pattern& pattern) noexcept {
    const auto tokens = pattern.Tokens();
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (!Are_Distinct(tokens[i].names)) return false;
        if (i != 0 && !Are_Apart(tokens[i - 1], tokens[i])) return false;
    }
    return true;
}

bool Has_Time(const Pattern& pattern) noexcept {
    const auto tokens = pattern.Tokens();
    return std::any_of(tokens.begin(), tokens.end(), [](const PatternToken& token) {
        return token.field >= Field::kHour && token.field <= Field::kHalf;
    });
}

bool Has_Date(const Pattern& pattern) noexcept {
    const auto tokens = pattern.Tokens();
    return std::any_of(tokens.begin(), tokens.end(),
                       [](const PatternToken& token) { return token.field <= Field::kWeekday; });
}

// Whether it is made of one date.
bool Is_Date(const Pattern& pattern) noexcept {
    return pattern.Count(Field::kYear) == 1 && pattern.Count(Field::kDay) == 1 &&
           pattern.Count(Field::kMonth) + pattern.Count(Field::kMonthName) == 1 &&
           pattern.Count(Field::kWeekday) <= 1 && !Has_Time(pattern);
}

bool Is_Time(const Pattern& pattern) noexcept {
    return pattern.Count(Field::kHour) + pattern.Count(Field::kHour12) == 1 &&
           pattern.Count(Field::kMinute) == 1 && pattern.Count(Field::kSecond) <= 1 &&
           pattern.Count(Field::kHalf) <= 1 && !Has_Date(pattern);
}

// ---- what a locale knows ------------------------------------------------------------------------

int Era_Year(locale_t locale, int year) noexcept {
    std::tm date = {};
    date.tm_year = year - 1900;
    date.tm_mday = 1;
    char text[16] = "";
    strftime_l(text, sizeof text, "%Ey", &date, locale);
    return std::atoi(text);
}

// Only an era that holds all years is one more way to count them.
bool Find_Era(UserLocale& user) noexcept {
    user.era_years = Era_Year(user.locale, 2000) - 2000;
    return Era_Year(user.locale, 100) == 100 + user.era_years &&
           Era_Year(user.locale, 9999) == 9999 + user.era_years;
}

void Find_Order(UserLocale& user) noexcept {
    std::size_t count = 0;
    for (const PatternToken& token : user.date.Tokens()) {
        if (token.field <= Field::kDay) user.order[count++] = token.field;
        if (token.field == Field::kMonthName) user.order[count++] = Field::kMonth;
        if (token.field == Field::kYear) user.era = token.era;
    }
}

// The dashes tell that the order is that of the standard.
void Make_Plain_Date(UserLocale& user) noexcept {
    constexpr std::array kStandard = {Field::kYear, Field::kMonth, Field::kDay};
    const string_view separator = user.order == kStandard ? "-" : "/";
    for (const Field field : user.order) {
        if (user.plain_date.Last()) (void)user.plain_date.Add({.text = separator});
        (void)user.plain_date.Add({.field = field, .era = user.era});
    }
}

void Read_Date(UserLocale& user, const char* format) noexcept {
    const bool known = Compile(format, user.locale, user.words, user.date) && Is_Date(user.date);
    user.order = {Field::kYear, Field::kMonth, Field::kDay};
    user.era = false;
    if (known) Find_Order(user);
    const bool counted = !user.era || Find_Era(user);
    if (!counted) user.era = false;
    Make_Plain_Date(user);
    if (!known || !counted || !Are_Fields_Apart(user.date)) user.date = user.plain_date;
}

void Read_Time(UserLocale& user, const char* format) noexcept {
    const bool known = Compile(format, user.locale, user.words, user.time) && Is_Time(user.time) &&
                       Are_Fields_Apart(user.time);
    if (!known) (void)Compile("%T", user.locale, user.words, user.time);
    if (user.time.Count(Field::kHalf) == 0) user.time.Replace(Field::kHour12, Field::kHour);
}

void Find_Marks(UserLocale& user, const Pattern& pattern) noexcept {
    const auto tokens = pattern.Tokens();
    for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
        if (tokens[i + 1].field != Field::kLiteral) continue;
        const Field field = tokens[i].field == Field::kHour12 ? Field::kHour : tokens[i].field;
        const string_view mark = rv::Trimmed(tokens[i + 1].text);
        const bool parts_a_time = field == Field::kHour || field == Field::kMinute;
        if (parts_a_time || mark.find_first_not_of(rv::kDateSeparators) != string_view::npos)
            user.marks[static_cast<std::size_t>(field)] = mark;
    }
}

bool Is_Invariant(string_view name) noexcept {
    return name == "C" || name == "POSIX" || name.starts_with("C.");
}

// False: there is no memory.
bool Read_Locale(UserLocale& user, const char* name) noexcept {
    bool invariant = Is_Invariant(name);
    if (!invariant) {
        user.locale = newlocale(LC_TIME_MASK | LC_CTYPE_MASK, name, nullptr);
        if (!user.locale && errno == ENOMEM) return false;
        invariant = !user.locale;
    }
    if (invariant) user.locale = newlocale(LC_ALL_MASK, "C", nullptr);
    Read_Words(user.locale, user.words);
    Read_Date(user, invariant ? "%m/%d/%Y" : nl_langinfo_l(D_FMT, user.locale));
    Read_Time(user, invariant ? "%T" : nl_langinfo_l(T_FMT, user.locale));
    Find_Marks(user, user.date);
    Find_Marks(user, user.time);
    return true;
}

// ---- which locale it is -------------------------------------------------------------------------

// What says which locale is the user's. Both are terminated.
struct Choice {
    const char* name = "C";
    const char* path = "";

    bool operator==(const Choice& other) const noexcept {
        return std::strcmp(name, other.name) == 0 && std::strcmp(path, other.path) == 0;
    }
};

// The value of a variable in an entry of the environment; null when it is that of another.
template <std::size_t size>
const char* Value_In(const char* entry, const char (&name)[size]) noexcept {
    for (std::size_t i = 0; i + 1 < size; ++i)
        if (entry[i] != name[i]) return nullptr;
    return entry + size - 1;
}

// One walk instead of one a variable: it is all that finding the locale costs most of the time.
Choice Read_Environment() noexcept {
    const char *all = nullptr, *time = nullptr, *lang = nullptr, *path = nullptr;
    const auto keep = [](const char*& kept, const char* value) {
        if (!kept) kept = value;
    };
    for (char** at = environ; at && *at; ++at) {
        const char* const entry = *at;
        if (entry[0] != 'L') continue;
        keep(all, Value_In(entry, "LC_ALL="));
        keep(time, Value_In(entry, "LC_TIME="));
        keep(lang, Value_In(entry, "LANG="));
        keep(path, Value_In(entry, "LOCPATH="));
    }
    Choice choice;
    if (path) choice.path = path;
    for (const char* const name : {lang, time, all})
        if (name && *name != '\0') choice.name = name;
    return choice;
}

// A locale with the choice that it was taken in for, and the number of its owners.
class KeptLocale {
public:
    // Null without memory. The caller is its owner.
    static KeptLocale* Make(const Choice& choice) noexcept {
        const std::size_t name_size = std::strlen(choice.name) + 1;
        const std::size_t path_size = std::strlen(choice.path) + 1;
        void* const block = rv::Heap_Allocate(sizeof(KeptLocale) + name_size + path_size);
        if (!block) return nullptr;
        char* const name = static_cast<char*>(block) + sizeof(KeptLocale);
        char* const path = name + name_size;
        std::memcpy(name, choice.name, name_size);
        std::memcpy(path, choice.path, path_size);
        auto* const kept = new (block) KeptLocale({name, path});
        if (Read_Locale(kept->m_User, name)) return kept;
        kept->Drop();
        return nullptr;
    }

    bool Is_For(const Choice& choice) const noexcept { return m_Choice == choice; }
    const UserLocale& User() const noexcept { return m_User; }

    void Own() noexcept { m_Owners.fetch_add(1, std::memory_order_relaxed); }
    void Drop() noexcept {
        if (m_Owners.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
        if (m_User.locale) freelocale(m_User.locale);
        this->~KeptLocale();
        rv::Heap_Free(this);
    }

private:
    explicit KeptLocale(const Choice& choice) noexcept : m_Choice(choice) {}

    UserLocale m_User = {};
    Choice m_Choice;
    std::atomic<unsigned> m_Owners = 1;
};

// ---- the locales that are kept ------------------------------------------------------------------

std::mutex g_Lock;
std::array<KeptLocale*, 8> g_Kept;  // the one used last in front; null behind the last

// Owned by the caller. Null without memory.
KeptLocale* Find_Or_Make(const Choice& choice) noexcept {
    const std::lock_guard lock(g_Lock);
    auto* found = std::find_if(g_Kept.begin(), g_Kept.end(), [&](const KeptLocale* kept) {
        return kept && kept->Is_For(choice);
    });
    if (found == g_Kept.end()) {
        KeptLocale* const made = KeptLocale::Make(choice);
        if (!made) return nullptr;
        --found;
        if (*found) (*found)->Drop();
        *found = made;
    }
    std::rotate(g_Kept.begin(), found, found + 1);
    g_Kept.front()->Own();
    return g_Kept.front();
}

// What a thread used last, so that it asks nobody while its locale stays.
class LastOfThread {
public:
    ~LastOfThread() { Set(nullptr); }

    const UserLocale* Get() noexcept {
        const Choice choice = Read_Environment();
        if (!m_Kept || !m_Kept->Is_For(choice)) Set(Find_Or_Make(choice));
        return m_Kept ? &m_Kept->User() : nullptr;
    }

private:
    void Set(KeptLocale* kept) noexcept {
        if (m_Kept) m_Kept->Drop();
        m_Kept = kept;
    }

    KeptLocale* m_Kept = nullptr;
};

thread_local LastOfThread t_Last;

}  // namespace

const UserLocale* rv::User_Locale() noexcept {
    return t_Last.Get();
}
