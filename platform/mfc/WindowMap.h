// Which object belongs to a window.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "CWnd.h"

// Objects by their windows. It needs no memory and no destructor, so that a thread can ask its own
// at any time of its life.
class WindowMap {
public:
    CWnd* Find(HWND window) const noexcept {
        CWnd* at = m_Buckets[Bucket_Of(window)];
        while (at && at->m_hWnd != window)
            at = at->m_NextInBucket;
        return at;
    }

    void Add(CWnd& object) noexcept {
        object.m_NextInBucket = std::exchange(m_Buckets[Bucket_Of(object.m_hWnd)], &object);
    }

    // Nothing happens for one that is not there.
    void Remove(const CWnd& object) noexcept {
        CWnd** at = &m_Buckets[Bucket_Of(object.m_hWnd)];
        while (*at && *at != &object)
            at = &(*at)->m_NextInBucket;
        if (*at) *at = object.m_NextInBucket;
    }

    // Ends the objects that `is_over` holds true for, and leaves their windows alone.
    template <class Predicate>
    void Delete_If(Predicate is_over) noexcept {
        for (CWnd*& bucket : m_Buckets) {
            for (CWnd** at = &bucket; *at;) {
                CWnd* const object = *at;
                if (!is_over(object->m_hWnd)) {
                    at = &object->m_NextInBucket;
                    continue;
                }
                *at = object->m_NextInBucket;
                object->m_hWnd = nullptr;
                delete object;
            }
        }
    }

private:
    static constexpr std::size_t kBuckets = 64;

    static std::size_t Bucket_Of(HWND window) noexcept {
        const auto bits = reinterpret_cast<std::uintptr_t>(window);
        return (bits ^ bits >> 6) % kBuckets;
    }

    CWnd* m_Buckets[kBuckets];
};
