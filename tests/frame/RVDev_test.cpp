// Reports and traces reach the one sink, whatever it does and whoever replaces it meanwhile.
#include <RVUtils/CException.h>
#include <RVUtils/ErrorSink.h>
#include <RVUtils/RVDev.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "report_recorder.h"

namespace {

using rv_test::ReportRecorder;
using rv_test::Reports;

void Report(unsigned int code) {
    pProgrammer_Error(code, "XmlParser", 71, true);
}

// Expects that `action` writes one line with these parts to standard error.
template <class Action>
void Expect_Line(const std::vector<std::string>& parts, Action action) {
    testing::internal::CaptureStderr();
    action();
    const std::string text = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << text;
    for (const std::string& part : parts)
        EXPECT_NE(text.find(part), std::string::npos) << part << " in " << text;
}

TEST(RVDev, DefaultIsOneLineToStandardError) {
    const ReportRecorder restoring;
    pSet_Programmer_Error_Sink({});
    Expect_Line({"25", "DirMgr", "4294967295"},
                [] { pProgrammer_Error(25, "DirMgr", 0xffffffff, true); });
    Expect_Line({"17", "99"}, [] { pProgrammer_Error(17, nullptr, 99, true); });
    Expect_Line({"7", "100 %s"}, [] { pProgrammer_Trace(7, "100 %s"); });
    Expect_Line({"1"}, [] { pProgrammer_Trace(1, nullptr); });
}

TEST(RVDev, TheSinkBeforeComesBack) {
    ReportRecorder outer;
    {
        ReportRecorder inner;
        Report(12);
        pProgrammer_Trace(3, "inner");
        EXPECT_EQ(inner.Take(), (Reports{{12, "XmlParser"}}));
        EXPECT_EQ(inner.Take_Traces(), (Reports{{3, "inner"}}));
    }
    Report(13);
    pProgrammer_Error(14, nullptr, 0, true);
    EXPECT_EQ(outer.Take(), (Reports{{13, "XmlParser"}, {14, ""}}));
    EXPECT_EQ(pSet_Programmer_Error_Sink({}).m_Context, &outer);
}

void Throw_Something(const void* what) {
    const int kind = *static_cast<const int*>(what);
    if (kind == 0) throw 5;
    if (kind == 1) throw std::runtime_error("no disk");
    if (kind == 2) AfxThrowMemoryException();
    AfxThrowFileException(CFileException::diskFull, 112);
}

TEST(RVDev, ExceptionOfASinkEndsInTheReport) {
    const ReportRecorder restoring;
    const auto on_error = [](void* what, unsigned, const char*, ULONG) { Throw_Something(what); };
    const auto on_trace = [](void* what, ULONG, const char*) { Throw_Something(what); };
    for (int kind = 0; kind < 4; ++kind) {
        pSet_Programmer_Error_Sink({on_error, on_trace, &kind});
        // Twice: the first must leave nothing behind.
        for (int round = 0; round < 2; ++round) {
            Expect_Line({"23", "XmlParser"}, [] { Report(23); });
            Expect_Line({"late"}, [] { pProgrammer_Trace(1, "late"); });
        }
    }
}

TEST(RVDev, SinkMayReportAndReplaceItself) {
    ReportRecorder recorder;
    RVErrorSink next = pSet_Programmer_Error_Sink({});
    const auto report_and_replace = [](void* next_sink, unsigned int code, const char*, ULONG) {
        Report(code + 1);  // not to the sink, without end
        if (code == 600) pSet_Programmer_Error_Sink(*static_cast<RVErrorSink*>(next_sink));
    };
    pSet_Programmer_Error_Sink({report_and_replace, nullptr, &next});
    Expect_Line({"501"}, [] { Report(500); });
    Expect_Line({"601"}, [] { Report(600); });
    EXPECT_EQ(recorder.Take(), Reports());
    Report(700);
    EXPECT_EQ(recorder.Take(), (Reports{{700, "XmlParser"}}));
}

// The setter returns only after the last call into the old sink; the new one works already.
TEST(RVDev, ReplacingWaitsForTheCallsInTheOldSink) {
    struct Gate {
        std::promise<void> m_Entered, m_Open;
        std::atomic<bool> m_Left = false;
    } gate;
    const ReportRecorder restoring;
    const auto pass = [](void* context, unsigned int code, const char*, ULONG) {
        if (code != 1) return;
        auto& self = *static_cast<Gate*>(context);
        self.m_Entered.set_value();
        self.m_Open.get_future().wait();
        self.m_Left = true;
    };
    const auto count = [](void* number, unsigned int, const char*, ULONG) {
        ++*static_cast<std::atomic<int>*>(number);
    };
    pSet_Programmer_Error_Sink({pass, nullptr, &gate});
    std::thread reporter([] { Report(1); });
    gate.m_Entered.get_future().wait();
    std::atomic<int> reached_new = 0;
    std::atomic<bool> returned = false;
    bool left_before_return = false;
    std::thread setter([&] {
        pSet_Programmer_Error_Sink({count, nullptr, &reached_new});
        left_before_return = gate.m_Left;
        returned = true;
    });
    while (reached_new == 0)
        Report(2);
    // The setter has done its work; one that does not wait gets every chance to come back.
    for (int round = 0; round < 1000; ++round)
        std::this_thread::yield();
    EXPECT_FALSE(returned);
    gate.m_Open.set_value();
    setter.join();
    reporter.join();
    EXPECT_TRUE(left_before_return);
}

// Two threads take each other's sinks out and free their contexts, with others reporting.
TEST(RVDev, ContextOfAReplacedSinkCanGo) {
    const ReportRecorder restoring;
    static std::atomic<int> s_Total;
    s_Total = 0;
    const auto add = [](void* one, unsigned, const char*, ULONG) {
        s_Total += *static_cast<int*>(one);
    };
    const auto make = [add] { return RVErrorSink{add, nullptr, new int(1)}; };
    const auto end = [](const RVErrorSink& sink) { delete static_cast<int*>(sink.m_Context); };
    pSet_Programmer_Error_Sink(make());
    std::atomic<bool> stop = false;
    std::atomic<int> reported = 0;
    std::vector<std::thread> reporters, setters;
    for (int i = 0; i < 3; ++i)
        reporters.emplace_back([&] {
            for (; !stop; ++reported)
                Report(12);
        });
    for (int i = 0; i < 2; ++i)
        setters.emplace_back([&] {
            for (int round = 0; round < 300; ++round)
                end(pSet_Programmer_Error_Sink(make()));
        });
    for (std::thread& setter : setters)
        setter.join();
    stop = true;
    for (std::thread& reporter : reporters)
        reporter.join();
    end(pSet_Programmer_Error_Sink({}));
    EXPECT_EQ(s_Total, reported);
}

}  // namespace
