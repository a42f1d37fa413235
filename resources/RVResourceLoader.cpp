#include "RVResourceLoader.h"

#include <cstdint>
#include <new>
#include <utility>

#include "../frame/RVDev.h"
#include "../platform/mfc/CException.h"

namespace {

constexpr unsigned int kNoMemory = 23;
constexpr DWORD kLongestWait = 1000;
constexpr ULONG kResourceNumbers = 0xFFFF;

// What `call` gives, or `otherwise` when it runs out of memory.
template <class Result, class Call>
Result Result_Or(Result otherwise, Call call) {
    try {
        return call();
    } catch (CMemoryException* exception) {
        exception->Delete();
        return otherwise;
    }
}

void Append(RVString& name, ULONG number) {
    RVString digits;
    digits.Number_To_String(number);
    name += digits;
}

// Of no other loader in any process.
RVString Mutex_Name(const RVResourceLoader* loader) {
    const auto address = std::uint64_t{reinterpret_cast<std::uintptr_t>(loader)};
    RVString name("ResLoader");
    // An address has more bits than a number.
    Append(name, static_cast<ULONG>(address >> 32));
    Append(name, static_cast<ULONG>(address));
    Append(name, GetCurrentThreadId());
    return name;
}

}  // namespace

RVResourceLoader::RVResourceLoader(const RVString& directory, const RVString& application,
                                   unsigned short language, ULONG module, HINSTANCE instance) {
    Set_Config(directory, application, language, module, instance);
    Create_Mutex();
}

RVResourceLoader::RVResourceLoader(RVLanguageManager* manager, ULONG module, HINSTANCE instance) {
    Set_Config(manager, module, instance);
    Create_Mutex();
}

RVResourceLoader::~RVResourceLoader() {
    Clean_Up();
    delete std::exchange(m_Mutex, nullptr);
}

bool RVResourceLoader::Set_Config(const RVString& directory, const RVString& application,
                                  unsigned short language, ULONG module, HINSTANCE instance) {
    Clean_Up();
    m_Module = module;
    m_Instance = instance;
    m_Manager = Result_Or<RVLanguageManager*>(
        nullptr, [&] { return new (std::nothrow) RVLanguageManager(directory, application); });
    m_OwnsManager = m_Manager != nullptr;
    return Set_Config(language);
}

void RVResourceLoader::Set_Config(RVLanguageManager* manager, ULONG module, HINSTANCE instance) {
    Clean_Up();
    m_Manager = manager;
    m_Module = module;
    m_Instance = instance;
}

bool RVResourceLoader::Set_Config(unsigned short language) {
    if (!m_Manager) return false;
    if (!Result_Or(false, [&] { return m_Manager->Open_Language(language, true, true); }))
        return false;
    m_Language = language;
    return true;
}

void RVResourceLoader::Set_Config(ULONG module) {
    m_Module = module;
}

void RVResourceLoader::Get_Config(unsigned short& language, ULONG& module) const {
    language = m_Language;
    module = m_Module;
}

RVLanguageManager* RVResourceLoader::Get_Lang_Mgr() const {
    return m_Manager;
}

bool RVResourceLoader::Load_String(RVString& text, ULONG string, ULONG module) {
    text.Empty();
    if (m_Manager) {
        const ULONG key = module ? module : m_Module;
        Ask_Manager([&] { m_Manager->Get_Translated_Item(key, string, text, nullptr); });
    }
    return !text.IsEmpty() || text.Load_String(m_Instance, string);
}

bool RVResourceLoader::Load_Bitmap(HBITMAP& bitmap, ULONG id) {
    return Load_Image(bitmap, id, &LoadBitmapA);
}

bool RVResourceLoader::Load_Cursor(HICON& cursor, ULONG id) {
    return Load_Image(cursor, id, &LoadCursorA);
}

bool RVResourceLoader::Load_Icon(HICON& icon, ULONG id) {
    return Load_Image(icon, id, &LoadIconA);
}

bool RVResourceLoader::Load_Bitmap(CBitmap& bitmap, ULONG id) {
    HBITMAP handle = nullptr;
    if (!Load_Bitmap(handle, id)) return false;
    if (bitmap.Attach(handle)) return true;
    DeleteObject(handle);
    return false;
}

template <class Handle, class Load>
bool RVResourceLoader::Load_Image(Handle& image, ULONG id, Load load) {
    image = nullptr;
    if (m_Manager) {
        void* translated = nullptr;
        unsigned int kind = 0;
        Ask_Manager([&] { m_Manager->Get_Translated_Item(id, &translated, &kind); });
        image = static_cast<Handle>(translated);
    }
    if (!image) image = load(m_Instance, MAKEINTRESOURCEA(id & kResourceNumbers));
    return image != nullptr;
}

// With the mutex, or without it when it cannot be had in time.
template <class Call>
void RVResourceLoader::Ask_Manager(Call call) {
    if (!m_Mutex) return call();
    CSingleLock lock(m_Mutex);
    lock.Lock(kLongestWait);
    call();
}

void RVResourceLoader::Create_Mutex() {
    m_Mutex = Result_Or<CMutex*>(
        nullptr, [this] { return new (std::nothrow) CMutex(FALSE, Mutex_Name(this)); });
    if (!m_Mutex) pProgrammer_Error(kNoMemory, "ResLoad", __LINE__, true);
}

void RVResourceLoader::Clean_Up() {
    if (m_OwnsManager) delete m_Manager;
    m_Manager = nullptr;
    m_OwnsManager = false;
}
