// Locks, and the objects that take them.
#pragma once

#include <atomic>

#include "../export.h"
#include "../winapi.h"
#include "CObject.h"

// Something that threads take and release.
class RVPLATFORM_API CSyncObject : public CObject {
public:
    CSyncObject() = default;
    CSyncObject(const CSyncObject&) = delete;
    CSyncObject& operator=(const CSyncObject&) = delete;
    ~CSyncObject() override;

    // Waits until the calling thread has it, `timeout` milliseconds at most, without limit for
    // INFINITE. FALSE when it cannot be had.
    virtual BOOL Lock(DWORD timeout = INFINITE) = 0;
    // By the thread that has it.
    virtual BOOL Unlock() = 0;
};

// A lock inside of one process. The thread that holds it may take it again; each taking needs its
// own release. Waits without limit, whatever the timeout.
class RVPLATFORM_API CCriticalSection : public CSyncObject {
public:
    // Throws CMemoryException* when the system cannot set up the lock.
    CCriticalSection();
    ~CCriticalSection() override;

    BOOL Lock(DWORD timeout = INFINITE) override;
    BOOL Unlock() override;

private:
    CRITICAL_SECTION m_Section;
};

// Takes and releases a lock, and remembers whether it holds it. The lock must outlive it.
//
// There is one mark, not one for each thread: it is written only by the thread that holds the lock,
// after taking it and before letting it go. Any thread may read it.
class CSingleLock {
public:
    explicit CSingleLock(CSyncObject* object) : m_Object(object) {}
    CSingleLock(const CSingleLock&) = delete;
    CSingleLock& operator=(const CSingleLock&) = delete;
    // Releases the lock if it is held.
    ~CSingleLock() { Unlock(); }

    // Takes the lock, as its own Lock, and sets the mark. FALSE when it could not be had.
    BOOL Lock(DWORD timeout = INFINITE) {
        if (!m_Object->Lock(timeout)) return FALSE;
        m_IsLocked.store(true, std::memory_order_relaxed);
        return TRUE;
    }
    // Releases the lock and clears the mark; FALSE, and nothing else, when the mark is not set.
    BOOL Unlock() {
        if (!IsLocked()) return FALSE;
        m_IsLocked.store(false, std::memory_order_relaxed);
        return m_Object->Unlock();
    }
    BOOL IsLocked() const noexcept { return m_IsLocked.load(std::memory_order_relaxed); }

private:
    CSyncObject* m_Object;
    std::atomic<bool> m_IsLocked = false;
};
