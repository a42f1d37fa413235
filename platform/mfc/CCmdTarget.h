// Message maps, and the base of what has one.
#pragma once

#include "../export.h"
#include "../winapi.h"
#include "CObject.h"

class CCmdTarget;

// What a message map says of one kind of message. `pfn` calls the operation that answers it and
// gives FALSE when that left the message to the rest of the program.
struct AFX_MSGMAP_ENTRY {
    UINT nMessage;  // 0 behind the last entry; with WM_REFLECT_BASE, what the parent gives back
    UINT nCode;     // of WM_COMMAND and WM_NOTIFY
    UINT_PTR nID;   // of the control that these come from; 0 where they are given back to it
    BOOL (*pfn)(CCmdTarget& target, WPARAM first, LPARAM second, LRESULT& result);
};

struct AFX_MSGMAP {
    const AFX_MSGMAP* (*pfnGetBaseMap)();  // null in the first class of all
    const AFX_MSGMAP_ENTRY* lpEntries;
};

inline constexpr UINT WM_REFLECT_BASE = 0xBC00;

// Something that answers messages. A derived class says which, in its own message map, and what is
// not in there goes by the map of its base:
//
//     class Cell : public CButton {
//     protected:
//         void OnPaint();
//         DECLARE_MESSAGE_MAP()
//     };
//
//     BEGIN_MESSAGE_MAP(Cell, CButton)
//     ON_WM_PAINT()
//     END_MESSAGE_MAP()
class RVPLATFORM_API CCmdTarget : public CObject {
public:
    CCmdTarget() noexcept = default;
    CCmdTarget(const CCmdTarget&) = delete;
    CCmdTarget& operator=(const CCmdTarget&) = delete;
    ~CCmdTarget() override;

    // Begins and ends the wait cursor, through the application object; each beginning needs its
    // end. Nothing happens without that object.
    void BeginWaitCursor();
    void EndWaitCursor();

protected:
    static const AFX_MSGMAP* GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const;
};

#define DECLARE_MESSAGE_MAP()                     \
protected:                                        \
    static const AFX_MSGMAP* GetThisMessageMap(); \
    const AFX_MSGMAP* GetMessageMap() const override;

// clang-format off
#define BEGIN_MESSAGE_MAP(class_name, base_name)          \
    const AFX_MSGMAP* class_name::GetMessageMap() const { \
        return class_name::GetThisMessageMap();           \
    }                                                     \
    const AFX_MSGMAP* class_name::GetThisMessageMap() {   \
        using ThisClass [[maybe_unused]] = class_name;    \
        using TheBaseClass = base_name;                   \
        static const AFX_MSGMAP_ENTRY s_Entries[] = {

#define END_MESSAGE_MAP()                                                              \
            {0, 0, 0, nullptr}};                                                       \
        static const AFX_MSGMAP s_Map = {&TheBaseClass::GetThisMessageMap, s_Entries}; \
        return &s_Map;                                                                 \
    }
// clang-format on
