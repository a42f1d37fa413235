// Records what is reported while a test runs.
#pragma once

#include <RVUtils/ErrorSink.h>

#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace rv_test {

// While one lives, reports and traces come here instead of to the sink before. Any thread reports.
//
//     ReportRecorder reports;
//     EXPECT_FALSE(parser.Load_File(missing));
//     EXPECT_EQ(reports.Take(), (Reports{{25, "XmlParser"}}));
using Reports = std::vector<std::pair<unsigned int, std::string>>;  // code, source file

class ReportRecorder {
public:
    ReportRecorder() : m_Before(pSet_Programmer_Error_Sink({&On_Error, &On_Trace, this})) {}
    ReportRecorder(const ReportRecorder&) = delete;
    ReportRecorder& operator=(const ReportRecorder&) = delete;
    ~ReportRecorder() { pSet_Programmer_Error_Sink(m_Before); }

    // What has come since the last call, in the order of arrival.
    Reports Take() { return Take_From(m_Errors); }
    // The same for traces: level and text.
    Reports Take_Traces() { return Take_From(m_Traces); }

private:
    static void On_Error(void* recorder, unsigned int code, const char* source_file, ULONG) {
        auto& self = *static_cast<ReportRecorder*>(recorder);
        const std::lock_guard lock(self.m_Mutex);
        self.m_Errors.emplace_back(code, source_file);
    }
    static void On_Trace(void* recorder, ULONG level, const char* text) {
        auto& self = *static_cast<ReportRecorder*>(recorder);
        const std::lock_guard lock(self.m_Mutex);
        self.m_Traces.emplace_back(static_cast<unsigned int>(level), text);
    }
    Reports Take_From(Reports& reports) {
        const std::lock_guard lock(m_Mutex);
        return std::exchange(reports, {});
    }

    std::mutex m_Mutex;
    Reports m_Errors;
    Reports m_Traces;
    RVErrorSink m_Before;  // last, so that nothing arrives before the rest is there
};

}  // namespace rv_test
