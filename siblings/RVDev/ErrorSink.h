// Where RVDev's stand-in sends what is reported to it.
#pragma once

#include "../../frame/export.h"
#include "../../platform/winapi.h"

// What is called with each report. `context` is handed to both callbacks as it is; who installs the
// sink keeps it alive until the sink is replaced.
//
// The callbacks run on the thread that reports, on several at a time. The texts last until the
// callback returns and are never null. Where a callback is null, one line goes to standard error
// instead; so it does when the callback throws, whose exception ends there, and when it reports
// something itself.
struct RVErrorSink {
    // Gets the reports of pProgrammer_Error: code, source file and line.
    void (*m_Error)(void* context, unsigned int code, const char* source_file,
                    ULONG line) = nullptr;
    // Gets the traces, with their level.
    void (*m_Trace)(void* context, ULONG level, const char* text) = nullptr;
    // Handed to both as it is; the owner's affair.
    void* m_Context = nullptr;
};

// Installs the one sink of the process and gives back the one before; `{}`, with which the process
// starts, is the line to standard error.
//
// When it returns, the sink before is no longer running and will not be called any more, so its
// context can go. Only a callback that replaces its own sink does not wait: the sink before may
// still be running, on its own thread and on others. Any thread.
RVDEV_API RVErrorSink pSet_Programmer_Error_Sink(const RVErrorSink& sink) noexcept;
