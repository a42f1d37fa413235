// The stand-in of RVDev: reports go to one replaceable sink.
#include "../../frame/RVDev.h"

#include <condition_variable>
#include <cstddef>
#include <cstdio>
#include <mutex>
#include <new>
#include <thread>

#include "../../platform/mfc/CException.h"
#include "ErrorSink.h"

namespace {

// A callback that runs right now. It lives on the stack of the thread that reports, because a
// report of exhausted memory must not ask for any.
struct Call {
    Call* m_Next = nullptr;
    std::thread::id m_Thread = std::this_thread::get_id();
    ULONGLONG m_Installation = 0;
};

// The sink and the calls into it.
class Switchboard {
public:
    // Enters `call` and gives the sink to call: the default one inside of a callback, since a sink
    // that reports to itself would never end.
    RVErrorSink Begin(Call& call) {
        const std::lock_guard lock(m_Mutex);
        const RVErrorSink sink = Runs_On(call.m_Thread) ? RVErrorSink() : m_Sink;
        call.m_Installation = m_Installation;
        call.m_Next = m_Calls;
        m_Calls = &call;
        return sink;
    }

    void End(Call& call) {
        const std::lock_guard lock(m_Mutex);
        Call** link = &m_Calls;
        while (*link != &call)
            link = &(*link)->m_Next;
        *link = call.m_Next;
        m_Ended.notify_all();
    }

    RVErrorSink Install(const RVErrorSink& sink) {
        std::unique_lock lock(m_Mutex);
        const RVErrorSink before = m_Sink;
        m_Sink = sink;
        const ULONGLONG installation = ++m_Installation;
        if (!Runs_On(std::this_thread::get_id()))
            m_Ended.wait(lock, [&] { return !Runs_From_Before(installation); });
        return before;
    }

private:
    bool Runs_On(std::thread::id thread) const {
        for (const Call* call = m_Calls; call; call = call->m_Next)
            if (call->m_Thread == thread) return true;
        return false;
    }
    bool Runs_From_Before(ULONGLONG installation) const {
        for (const Call* call = m_Calls; call; call = call->m_Next)
            if (call->m_Installation < installation) return true;
        return false;
    }

    std::mutex m_Mutex;
    std::condition_variable m_Ended;
    RVErrorSink m_Sink;
    ULONGLONG m_Installation = 0;  // counts the sinks, so that a call knows which one it is in
    Call* m_Calls = nullptr;
};

// Never destroyed: destructors at the end of the process report, too.
Switchboard& The_Switchboard() {
    alignas(Switchboard) static std::byte room[sizeof(Switchboard)];
    static Switchboard& switchboard = *new (room) Switchboard;
    return switchboard;
}

// Whether `callback` ran through. A report is a side road: nothing that happens on it may change
// the way of the operation that reports.
template <class Callback>
bool Survives(Callback callback) noexcept {
    try {
        callback();
        return true;
    } catch (CException* exception) {
        exception->Delete();
    } catch (...) {
    }
    return false;
}

const char* Text_Of(const char* text) noexcept {
    return text ? text : "";
}

}  // namespace

RVErrorSink pSet_Programmer_Error_Sink(const RVErrorSink& sink) noexcept {
    return The_Switchboard().Install(sink);
}

bool pProgrammer_Error(unsigned int code, const char* source_file, ULONG line, bool) noexcept {
    const char* const file = Text_Of(source_file);
    Call call;
    const RVErrorSink sink = The_Switchboard().Begin(call);
    const bool taken =
        sink.m_Error && Survives([&] { sink.m_Error(sink.m_Context, code, file, line); });
    The_Switchboard().End(call);
    if (!taken)
        std::fprintf(stderr, "programmer error %u: %s, line %u\n", code, file,
                     static_cast<unsigned>(line));
    return true;
}

void pProgrammer_Trace(ULONG level, const char* text) noexcept {
    const char* const shown = Text_Of(text);
    Call call;
    const RVErrorSink sink = The_Switchboard().Begin(call);
    const bool taken =
        sink.m_Trace && Survives([&] { sink.m_Trace(sink.m_Context, level, shown); });
    The_Switchboard().End(call);
    if (!taken) std::fprintf(stderr, "trace %u: %s\n", static_cast<unsigned>(level), shown);
}
