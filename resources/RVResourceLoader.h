// Strings and images by number, translated where a language is open.
#pragma once

#include "../frame/RVLanguageManager.h"
#include "../frame/RVString.h"
#include "../frame/export.h"
#include "../platform/mfc/CBitmap.h"
#include "../platform/mfc/CMutex.h"
#include "../platform/winapi.h"

// The one door to an application's items: it asks a language manager first, and where that has no
// translation, the resources of a module.
//
// The manager is its own, made of a directory, an application's tag and a language, and ends with
// the configuration; or it is borrowed, and somebody else ends it after the loader or its next
// configuration. Without a manager the module serves alone.
//
// Several threads may load from one loader. A mutex of the loader's own orders its calls on the
// manager; a thread that has waited for a second goes on without it, so that one call which hangs
// stops nobody for good, and a manager has to bear calls at the same time. Two loaders that share a
// manager do not exclude each other. Nobody may load while the loader is configured or ends.
//
// Report to pProgrammer_Error, file "ResLoad":
//   23  there is no memory for the mutex; the loader then works without one
// An item that is found nowhere is told by the result alone. Loading throws CMemoryException* when
// there is no memory for a text; nothing else throws.
class RVUTILS_API RVResourceLoader {
public:
    // With a manager of its own. A language that does not open leaves a loader that goes on asking
    // the manager; see Set_Config.
    RVResourceLoader(const RVString& directory, const RVString& application,
                     unsigned short language, ULONG module, HINSTANCE instance);
    // With a borrowed manager, or none.
    explicit RVResourceLoader(RVLanguageManager* manager = nullptr, ULONG module = 0,
                              HINSTANCE instance = nullptr);
    RVResourceLoader(const RVResourceLoader&) = delete;
    RVResourceLoader& operator=(const RVResourceLoader&) = delete;
    virtual ~RVResourceLoader();

    // Each of the first two ends the manager of its own that there was.
    //
    // `module`: the number under which the manager has the application's strings. `instance`: the
    // module whose resources serve what is not translated; null stands for the application's own
    // strings, and for no images.
    //
    // False when the manager cannot be made, or the language does not open; the manager stays, and
    // the language that is stored.
    bool Set_Config(const RVString& directory, const RVString& application, unsigned short language,
                    ULONG module, HINSTANCE instance);
    // The stored language stays what it was, whatever the manager has open.
    void Set_Config(RVLanguageManager* manager, ULONG module, HINSTANCE instance);
    // Opens another language. False without a manager, and as above.
    bool Set_Config(unsigned short language);
    void Set_Config(ULONG module);

    // The language last opened by Set_Config, 0 before; the module number.
    void Get_Config(unsigned short& language, ULONG& module) const;
    // Null without one. One of the loader's own stays its own.
    RVLanguageManager* Get_Lang_Mgr() const;

    // `module` 0 stands for the configured number. An empty translation is none. False, with an
    // empty text, when the string is found nowhere.
    bool Load_String(RVString& text, ULONG string, ULONG module = 0);

    // The manager is asked for the whole number, the module for its low 16 bits. False, with null,
    // when the image is found nowhere. A bitmap is the caller's to end; icons and cursors belong to
    // the manager or the module that they came from.
    bool Load_Bitmap(HBITMAP& bitmap, ULONG id);
    bool Load_Cursor(HICON& cursor, ULONG id);
    bool Load_Icon(HICON& icon, ULONG id);
    // The object owns the bitmap then. False, with the object as it was, when the bitmap is found
    // nowhere, or the object owns one already.
    bool Load_Bitmap(CBitmap& bitmap, ULONG id);

private:
    template <class Call>
    void Ask_Manager(Call call);
    template <class Handle, class Load>
    bool Load_Image(Handle& image, ULONG id, Load load);
    void Create_Mutex();
    void Clean_Up();

    HINSTANCE m_Instance = nullptr;
    RVLanguageManager* m_Manager = nullptr;
    unsigned short m_Language = 0;
    ULONG m_Module = 0;
    bool m_OwnsManager = false;
    CMutex* m_Mutex = nullptr;
};
