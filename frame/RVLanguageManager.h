// What the library requires of the sibling library zorLangMgr10: translated items, by number.
#pragma once

#include "../platform/mfc/HeapObject.h"
#include "RVString.h"
#include "export.h"

// What is open.
struct RV_file_info2 {
    RVString m_Path;                // of the language file; empty when none is open
    unsigned short m_Language = 0;  // which language it is
    ULONG m_Strings = 0;            // how many translated ones there are, the base's included
};

// The translations of an application's items into one language, out of the files of a directory.
//
// A language is a number as Windows has them, 0x407 for German. The directory has a file of
// translated strings for each language and application, TAG_0407.txt, whose form LanguageFile.h
// tells, and beside it the translated images, each under its number: TAG_0407_130.bmp, .ico or
// .cur. Numbers of images are 32 bits wide and are shared by bitmaps, icons and cursors: an item
// has one kind, so of several files for one number the first in this order serves.
//
// A language has a base: the same language in its usual country, as German of Germany is of German
// of Austria. What the language lacks comes from there.
//
// A damaged file is refused whole. One line about each goes to pProgrammer_Trace, level 1: the
// file, the line, what is wrong, what to do.
//
// Any thread may ask for items, several at a time. What needs memory throws CMemoryException* when
// there is none, with everything as it was.
class ZORLANGMGR_API RVLanguageManager : public rv::HeapObject {
public:
    // `directory`: native or not, with a separator at its end or without; it need not exist.
    // `application`: the tag, usually 1 to 4 letters or digits. With one that could not be part of
    // a file's name, nothing opens.
    RVLanguageManager(const RVString& directory, const RVString& application);
    RVLanguageManager(const RVLanguageManager&) = delete;
    RVLanguageManager& operator=(const RVLanguageManager&) = delete;
    // Ends the icons and cursors that it gave.
    virtual ~RVLanguageManager();

    // Opens a language in place of the one before. `with_base`: its base serves, too, also alone.
    // `with_images`: bitmaps, icons and cursors are given, too. False when there is no file of it,
    // or a damaged one; what was open stays so.
    bool Open_Language(unsigned short language, bool with_base, bool with_images);

    // The translation of a module's string, in the encoding of narrow texts (see utf8_text.h).
    // `language`, unless null, is set to that whose file had it. False, with `text` and the number
    // as they were, when there is none; an empty translation is none.
    bool Get_Translated_Item(ULONG module, ULONG string, RVString& text, ULONG* language);

    // The translated image of that number. `*kind` is set to IMAGE_BITMAP, IMAGE_ICON or
    // IMAGE_CURSOR. A bitmap is a new one, which the caller deletes; icons and cursors belong to
    // the manager, and live as long as it does. False, with both as they were, when there is none.
    bool Get_Translated_Item(ULONG image, void** handle, unsigned int* kind);

    // Whether a message comes from a language tool and concerns what is open. `first` has a
    // language in its low word, 0 for every one, and what the tool wants in its high word.
    bool Is_Language_Message(unsigned int message, unsigned int first, LONG second);

    // Takes in what has changed in the files, and tells what is open then. False, with an empty
    // record, when nothing is. A tool that has saved a file asks for this.
    bool Get_Translation_Info(RV_file_info2& info);

    // With live update, a changed file is read again by itself, within a quarter of a second, when
    // an item is asked for; until it is whole, the old texts serve. Gives what the mode was.
    bool Set_Live_Update_Mode(bool on);

private:
    class State;

    State* m_State;
};

// The languages that an application tries: as the second, the user's; as the first, the system's.
ZORLANGMGR_API void rvGet_Language_Id(unsigned short* first, unsigned short* second);

// The number of the message that language tools send to every window.
ZORLANGMGR_API unsigned int rvGet_Language_Tools_Message_Id();
