// The stand-in of zorLangMgr10: translations out of the files of a directory.
#include "../../frame/RVLanguageManager.h"

#include <chrono>
#include <string_view>
#include <utility>
#include <vector>

#include "../../frame/RVDev.h"
#include "../../platform/image_file.h"
#include "../../platform/mfc/Allocation.h"
#include "../../platform/mfc/CSingleLock.h"
#include "../../platform/paths.h"
#include "../../platform/utf8_text.h"
#include "LanguageFile.h"
#include "WholeFile.h"

namespace {

using rv::LanguageFile;
using Result = LanguageFile::Result;

constexpr ULONG kFaultLevel = 1;

void Report(const CString& fault) noexcept {
    pProgrammer_Trace(kFaultLevel, fault);
}

// By what a changed file is known; all 0 when there is none.
struct Stamp {
    DWORD time_low = 0;
    DWORD time_high = 0;
    DWORD size_low = 0;
    DWORD size_high = 0;

    bool operator==(const Stamp&) const = default;
};

Stamp Stamp_Of(const char* path) noexcept {
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExA(path, GetFileExInfoStandard, &data)) return {};
    return {data.ftLastWriteTime.dwLowDateTime, data.ftLastWriteTime.dwHighDateTime,
            data.nFileSizeLow, data.nFileSizeHigh};
}

// The strings of one language, and where its images are.
class Language {
public:
    Language() = default;
    // `stem`: the path of its files without their ends.
    Language(unsigned short id, const CString& stem) : m_Id(id), m_Stem(stem) {}

    Result Read() {
        const CString path = Path();
        m_Stamp = Stamp_Of(path);
        CString fault;
        const Result result = m_Strings.Read(path, fault);
        if (result == Result::kRefused) Report(fault);
        m_IsOpen = result == Result::kRead;
        return result;
    }

    // Takes a changed file in; one that is missing or damaged leaves the strings that there are.
    void Refresh() {
        if (!m_IsOpen || Stamp_Of(Path()) == m_Stamp) return;
        Language changed(m_Id, m_Stem);
        if (changed.Read() == Result::kRead)
            *this = std::move(changed);
        else
            m_Stamp = changed.m_Stamp;  // one report about each state of the file
    }

    bool Is_Open() const noexcept { return m_IsOpen; }
    unsigned short Id() const noexcept { return m_Id; }
    const CString& Stem() const noexcept { return m_Stem; }
    CString Path() const { return m_Stem + ".txt"; }
    std::size_t Count() const noexcept { return m_Strings.Count(); }
    std::string_view Find(ULONG module, ULONG string) const noexcept {
        return m_Strings.Find(module, string);
    }

private:
    unsigned short m_Id = 0;
    CString m_Stem;
    LanguageFile m_Strings;
    Stamp m_Stamp;
    bool m_IsOpen = false;
};

// A kind of image and the files that hold it.
struct ImageKind {
    UINT type;
    const char* suffix;
    const char* (*fault)(rv::FileBytes file) noexcept;
};

constexpr int kUsualWidth = 32;

const char* Fault_Of_Bitmap(rv::FileBytes file) noexcept {
    rv::FileImage image;
    return rv::Find_Bitmap(file, image);
}

template <rv::IconKind kind>
const char* Fault_Of_Icon(rv::FileBytes file) noexcept {
    rv::FileImage image;
    return rv::Find_Icon(file, kind, kUsualWidth, image);
}

constexpr ImageKind kImageKinds[] = {
    {IMAGE_BITMAP, "bmp", &Fault_Of_Bitmap},
    {IMAGE_ICON, "ico", &Fault_Of_Icon<rv::IconKind::kIcon>},
    {IMAGE_CURSOR, "cur", &Fault_Of_Icon<rv::IconKind::kCursor>},
};

// Null, after a report, for a file that is damaged.
HANDLE Load_Image(const char* path, const ImageKind& kind) {
    rv::HeapText bytes;
    std::size_t size = 0;
    CString fault;
    const rv::FileResult result = rv::Read_Whole_File(path, bytes, size, fault);
    if (result == rv::FileResult::kMissing) return nullptr;
    if (result == rv::FileResult::kRead) {
        const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.get());
        const char* const wrong = kind.fault({data, size});
        if (!wrong) {
            const UINT size_flag = kind.type == IMAGE_BITMAP ? 0 : LR_DEFAULTSIZE;
            HANDLE const image =
                LoadImageA(nullptr, path, kind.type, 0, 0, LR_LOADFROMFILE | size_flag);
            if (image) return image;
        }
        fault.Format("%s: %s", path, wrong ? wrong : "the system cannot show it; save it anew");
    }
    Report(fault);
    return nullptr;
}

// An icon or a cursor that was given out.
struct GivenIcon {
    unsigned short language;
    ULONG id;
    UINT type;
    Stamp stamp;
    HANDLE handle;
};

void End(const GivenIcon& icon) noexcept {
    if (icon.type == IMAGE_ICON)
        DestroyIcon(static_cast<HICON>(icon.handle));
    else
        DestroyCursor(static_cast<HCURSOR>(icon.handle));
}

// How long a change may stay unseen.
constexpr std::chrono::milliseconds kBetweenLooks(200);

constexpr unsigned short kPrimaryLanguage = 0x3FF;
constexpr unsigned short kUsualCountry = 0x400;

}  // namespace

class RVLanguageManager::State : public rv::HeapObject {
public:
    State(const RVString& directory, const RVString& application)
        : m_Directory(directory), m_Application(application) {
        const int length = m_Directory.GetLength();
        const char last = length ? m_Directory[length - 1] : rv::kPathSeparator;
        if (last != '\\' && last != '/') m_Directory += rv::kPathSeparator;
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() {
        for (const GivenIcon& icon : m_Icons)
            End(icon);
    }

    bool Open(unsigned short id, bool with_base, bool with_images) {
        const auto base_id = static_cast<unsigned short>((id & kPrimaryLanguage) | kUsualCountry);
        if (!Is_Part_Of_A_Name(m_Application)) return false;
        Language language(id, Stem_Of(id)), base;
        if (language.Read() == Result::kRefused) return false;
        if (with_base && base_id != id) {
            base = Language(base_id, Stem_Of(base_id));
            if (base.Read() == Result::kRefused) return false;
        }
        if (!language.Is_Open() && !base.Is_Open()) return false;
        m_Languages[0] = std::move(language);
        m_Languages[1] = std::move(base);
        m_WithImages = with_images;
        m_LastLook = Clock::now();
        return true;
    }

    bool Find_Text(ULONG module, ULONG string, RVString& text, ULONG* language) {
        Look_For_Changes();
        for (const Language& from : m_Languages) {
            const std::string_view found = from.Find(module, string);
            if (found.empty()) continue;
            Set_Text(text, found);
            if (language) *language = from.Id();
            return true;
        }
        return false;
    }

    bool Find_Image(ULONG id, void** handle, unsigned int* type) {
        if (!m_WithImages) return false;
        for (const Language& from : m_Languages) {
            if (from.Stem().IsEmpty()) continue;
            for (const ImageKind& kind : kImageKinds) {
                HANDLE const image = Image_Of(from, id, kind);
                if (!image) continue;
                *handle = image;
                *type = kind.type;
                return true;
            }
        }
        return false;
    }

    bool Concerns(unsigned short language) const noexcept {
        if (!Is_Open()) return false;
        return language == 0 || language == m_Languages[0].Id() ||
               (m_Languages[1].Is_Open() && language == m_Languages[1].Id());
    }

    bool Get_Info(RV_file_info2& info) {
        info = {};
        if (!Is_Open()) return false;
        Refresh();
        const Language& shown = m_Languages[m_Languages[0].Is_Open() ? 0 : 1];
        info.m_Path = shown.Path();
        info.m_Language = shown.Id();
        info.m_Strings = static_cast<ULONG>(m_Languages[0].Count() + m_Languages[1].Count());
        return true;
    }

    bool Set_Live(bool on) noexcept { return std::exchange(m_IsLive, on); }

    CCriticalSection m_Lock;

private:
    using Clock = std::chrono::steady_clock;

    bool Is_Open() const noexcept { return m_Languages[0].Is_Open() || m_Languages[1].Is_Open(); }

    static bool Is_Part_Of_A_Name(const CString& tag) noexcept {
        return std::string_view(tag.GetString(), static_cast<std::size_t>(tag.GetLength()))
                   .find_first_of(std::string_view("\\/:*?\"<>|\0", 10)) == std::string_view::npos;
    }

    CString Stem_Of(unsigned short id) const {
        CString stem;
        stem.Format("%s%s_%04x", m_Directory, m_Application, id);
        return stem;
    }

    static void Set_Text(RVString& text, std::string_view utf8) {
        const int length = static_cast<int>(utf8.size());
        // Most languages need no more; the rest of them twice as much.
        for (const int room : {length, 2 * length}) {
            const int written = rv::Text_From_Utf8(utf8.data(), length, text.GetBuffer(room), room);
            if (written < 0) continue;
            text.ReleaseBuffer(written);
            return;
        }
        AfxThrowMemoryException();
    }

    void Look_For_Changes() {
        if (!m_IsLive) return;
        const Clock::time_point now = Clock::now();
        if (now - m_LastLook < kBetweenLooks) return;
        m_LastLook = now;
        Refresh();
    }

    void Refresh() {
        for (Language& language : m_Languages)
            language.Refresh();
    }

    HANDLE Image_Of(const Language& from, ULONG id, const ImageKind& kind) {
        CString path;
        path.Format("%s_%u.%s", from.Stem(), static_cast<unsigned>(id), kind.suffix);
        const Stamp stamp = Stamp_Of(path);
        if (stamp == Stamp()) return nullptr;
        if (kind.type == IMAGE_BITMAP) return Load_Image(path, kind);
        for (const GivenIcon& icon : m_Icons)
            if (icon.id == id && icon.language == from.Id() && icon.type == kind.type &&
                icon.stamp == stamp)
                return icon.handle;
        // First of all room, so that none is lost that there is no place for.
        if (m_Icons.size() == m_Icons.capacity()) m_Icons.reserve(2 * m_Icons.size() + 4);
        HANDLE const image = Load_Image(path, kind);
        if (image) m_Icons.push_back({from.Id(), id, kind.type, stamp, image});
        return image;
    }

    CString m_Directory;
    CString m_Application;
    Language m_Languages[2];  // the one that was opened, and its base
    bool m_WithImages = false;
    bool m_IsLive = false;
    Clock::time_point m_LastLook;
    std::vector<GivenIcon, rv::HeapAllocator<GivenIcon>> m_Icons;
};

namespace {

// Takes a manager's lock for one operation.
class Hold {
public:
    explicit Hold(CCriticalSection& lock) : m_Lock(lock) { m_Lock.Lock(); }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
    ~Hold() { m_Lock.Unlock(); }

private:
    CCriticalSection& m_Lock;
};

}  // namespace

RVLanguageManager::RVLanguageManager(const RVString& directory, const RVString& application)
    : m_State(new State(directory, application)) {}

RVLanguageManager::~RVLanguageManager() {
    delete m_State;
}

bool RVLanguageManager::Open_Language(unsigned short language, bool with_base, bool with_images) {
    const Hold hold(m_State->m_Lock);
    return m_State->Open(language, with_base, with_images);
}

bool RVLanguageManager::Get_Translated_Item(ULONG module, ULONG string, RVString& text,
                                            ULONG* language) {
    const Hold hold(m_State->m_Lock);
    return m_State->Find_Text(module, string, text, language);
}

bool RVLanguageManager::Get_Translated_Item(ULONG image, void** handle, unsigned int* kind) {
    const Hold hold(m_State->m_Lock);
    return m_State->Find_Image(image, handle, kind);
}

bool RVLanguageManager::Is_Language_Message(unsigned int message, unsigned int first, LONG) {
    if (message == 0 || message != rvGet_Language_Tools_Message_Id()) return false;
    const Hold hold(m_State->m_Lock);
    return m_State->Concerns(static_cast<unsigned short>(first & 0xFFFF));
}

bool RVLanguageManager::Get_Translation_Info(RV_file_info2& info) {
    const Hold hold(m_State->m_Lock);
    return m_State->Get_Info(info);
}

bool RVLanguageManager::Set_Live_Update_Mode(bool on) {
    const Hold hold(m_State->m_Lock);
    return m_State->Set_Live(on);
}

void rvGet_Language_Id(unsigned short* first, unsigned short* second) {
    *first = GetSystemDefaultUILanguage();
    *second = GetUserDefaultUILanguage();
}

unsigned int rvGet_Language_Tools_Message_Id() {
    return RegisterWindowMessageA("zorLangMgr10.LanguageTools");
}
