// What the library requires of the sibling library zorLtUtils10: the suite's string class.
#pragma once

#include "../platform/mfc/CString.h"
#include "../platform/winapi.h"
#include "export.h"

// The text type of nearly every interface: counted 8-bit text. Every operation of CString works on
// it. Copies are value copies; one object may be read by several threads at once. Operations that
// need memory throw CMemoryException* when there is none.
class ZORLTUTILS_API RVString : public CString {
public:
    RVString() noexcept = default;
    RVString(const RVString&) = default;
    RVString(RVString&&) noexcept = default;
    // A copy of the text; null is the empty one.
    RVString(const CString& text);
    RVString(const char* text);
    // The wide text made narrow.
    RVString(wchar_t* text);
    virtual ~RVString();

    RVString& operator=(const RVString&) = default;
    RVString& operator=(RVString&&) noexcept = default;
    // As the constructors take them; on failure the object is as it was.
    RVString& operator=(const CString& text);
    RVString& operator=(const char* text);
    RVString& operator=(wchar_t* text);

    // True when the two texts differ. Regards case and goes by the counted length.
    bool operator!=(const CString& other) const noexcept;
    bool operator!=(const char* text) const noexcept;

    // The text read as a decimal number: leading white space is skipped, a sign is allowed, reading
    // stops at the first other character, 0 when there is no number. Above 32 bits, and below zero,
    // it is the low 32 bits, so that every text of Number_To_String reads back as what it was.
    operator ULONG() const noexcept;

    // A new BSTR with the text made wide, by the encoding of the thread's locale, NUL bytes
    // included; released by the caller with SysFreeString. Throws CMemoryException* when it cannot
    // be had; it is never null.
    [[nodiscard]] BSTR Get_BSTR() const;

    // Takes the text `id` from the string table of `module`, null for the application's own. False,
    // with the text as it was, when the table lacks it or has an empty text there.
    bool Load_String(HINSTANCE module, unsigned int id);

    // Replaces the text by the number's decimal digits, with a leading "-" below zero.
    void Number_To_String(ULONG number);
    void Number_To_String(int number);
};

// A pointer to characters that may be changed is text here, too: without these two, the number that
// an RVString converts to would be added to the pointer just as well.
inline CString operator+(const RVString& left, char* right) {
    return left + static_cast<const char*>(right);
}
inline CString operator+(char* left, const RVString& right) {
    return static_cast<const char*>(left) + right;
}
