// Reports and traces reach the one sink, whatever it does and whoever replaces it meanwhile.
#include <RVUtils/CException.h>
#include <RVUtils/ErrorSink.h>
#include <RVUtils/RVDev.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "report_recorder.h"

namespace {

using rv_test::ReportRecorder;
using rv_test::Reports;

// Installs a sink for the length of a test.
class Installed {
public:
    explicit Installed(const RVErrorSink& sink) : m_Before(pSet_Programmer_Error_Sink(sink)) {}
    Installed(const Installed&) = delete;
    Installed& operator=(const Installed&) = delete;
    ~Installed() { pSet_Programmer_Error_Sink(m_Before); }

    const RVErrorSink& Before() const { return m_Before; }

private:
    RVErrorSink m_Before;
};

template <class Action>
std::string Standard_Error_Of(Action action) {
    testing::internal::CaptureStderr();
    action();
    std::string text = testing::internal::GetCapturedStderr();
    std::erase(text, '\r');
    return text;
}

void Report(unsigned int code) {
    pProgrammer_Error(code, "XmlParser", 71, true);
}

TEST(RVDev, DefaultIsOneLineToStandardError) {
    const struct {
        const char* why;
        RVErrorSink sink;
        std::vector<std::string> parts;
        void (*report)();
    } kRows[] = {
        {"error",
         {},
         {"25", "DirMgr", "4123"},
         [] { pProgrammer_Error(25, "DirMgr", 4123, true); }},
        {"error without a file",
         {},
         {"17", "99"},
         [] { pProgrammer_Error(17, nullptr, 99, true); }},
        {"all ones",
         {},
         {"4294967295", "4294967295"},
         [] { pProgrammer_Error(~0u, "", ~ULONG{0}, false); }},
        {"trace", {}, {"7", "it is 100 %s"}, [] { pProgrammer_Trace(7, "it is 100 %s"); }},
        {"trace without a text", {}, {"1"}, [] { pProgrammer_Trace(1, nullptr); }},
        {"sink for errors only",
         {[](void*, unsigned int, const char*, ULONG) {}, nullptr, nullptr},
         {"told"},
         [] { pProgrammer_Trace(1, "told"); }},
        {"sink for traces only",
         {nullptr, [](void*, ULONG, const char*) {}, nullptr},
         {"namecache"},
         [] { pProgrammer_Error(16, "namecache", 1, true); }},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const Installed installed(row.sink);
        const std::string text = Standard_Error_Of(row.report);
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << text;
        EXPECT_TRUE(text.ends_with('\n'));
        for (const std::string& part : row.parts)
            EXPECT_NE(text.find(part), std::string::npos) << part << " in " << text;
    }
}

TEST(RVDev, SinkGetsWhatIsPassedAndTheOneBeforeComesBack) {
    struct Seen {
        unsigned int m_Code = 0;
        std::string m_Text;
        ULONG m_Number = 0;
    } seen;
    const RVErrorSink sink = {[](void* context, unsigned int code, const char* file, ULONG line) {
                                  *static_cast<Seen*>(context) = {code, file, line};
                              },
                              [](void* context, ULONG level, const char* text) {
                                  *static_cast<Seen*>(context) = {0, text, level};
                              },
                              &seen};
    const Installed outer(sink);
    {
        ReportRecorder recorder;
        Report(12);
        pProgrammer_Trace(3, "inner");
        EXPECT_EQ(recorder.Take(), (Reports{{12, "XmlParser"}}));
        EXPECT_EQ(recorder.Take_Traces(), (Reports{{3, "inner"}}));
        EXPECT_EQ(recorder.Take(), Reports());
        EXPECT_EQ(seen.m_Text, "");

        const Installed inner(sink);
        EXPECT_NE(inner.Before().m_Context, sink.m_Context);
    }
    Report(13);
    EXPECT_EQ(seen.m_Code, 13u);
    EXPECT_EQ(seen.m_Text, "XmlParser");
    EXPECT_EQ(seen.m_Number, 71u);
    pProgrammer_Trace(4, "outer");
    EXPECT_EQ(seen.m_Text, "outer");
    EXPECT_EQ(seen.m_Number, 4u);

    const Installed again({});
    EXPECT_EQ(again.Before().m_Error, sink.m_Error);
    EXPECT_EQ(again.Before().m_Trace, sink.m_Trace);
    EXPECT_EQ(again.Before().m_Context, sink.m_Context);
}

TEST(RVDev, ExceptionOfASinkEndsInTheReport) {
    const struct {
        const char* why;
        void (*fail)();
    } kRows[] = {{"number", [] { throw 5; }},
                 {"standard exception", [] { throw std::runtime_error("no disk"); }},
                 {"memory exception", [] { AfxThrowMemoryException(); }},
                 {"file exception", [] { AfxThrowFileException(CFileException::diskFull, 112); }}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const Installed installed(
            {[](void* context, unsigned int, const char*, ULONG) {
                 (*static_cast<void (**)()>(context))();
             },
             [](void* context, ULONG, const char*) { (*static_cast<void (**)()>(context))(); },
             const_cast<void (**)()>(&row.fail)});
        // Twice: the first must leave nothing behind that keeps the second away from the sink.
        for (int round = 0; round < 2; ++round) {
            EXPECT_NE(Standard_Error_Of([] { Report(23); }).find("23"), std::string::npos);
            EXPECT_NE(Standard_Error_Of([] { pProgrammer_Trace(1, "late"); }).find("late"),
                      std::string::npos);
        }
    }
}

TEST(RVDev, SinkThatReportsIsNotCalledByItsOwnReport) {
    int calls = 0;
    const Installed installed(
        {[](void* context, unsigned int code, const char*, ULONG) {
             ++*static_cast<int*>(context);
             Report(code + 1);
             pProgrammer_Trace(1, "nested");
         },
         [](void* context, ULONG, const char*) { *static_cast<int*>(context) += 100; }, &calls});
    const std::string text = Standard_Error_Of([] { Report(500); });
    EXPECT_EQ(calls, 1);
    EXPECT_NE(text.find("501"), std::string::npos);
    EXPECT_NE(text.find("nested"), std::string::npos);
    EXPECT_EQ(text.find("500"), std::string::npos);

    Standard_Error_Of([] { Report(500); });
    EXPECT_EQ(calls, 2);
}

TEST(RVDev, SinkMayReplaceItself) {
    struct State {
        ReportRecorder* m_Recorder;
        RVErrorSink m_Recording;
        RVErrorSink m_Replaced;
    };
    ReportRecorder recorder;
    State state = {&recorder, pSet_Programmer_Error_Sink({}), {}};
    pSet_Programmer_Error_Sink({[](void* context, unsigned int, const char*, ULONG) {
                                    auto& self = *static_cast<State*>(context);
                                    self.m_Replaced = pSet_Programmer_Error_Sink(self.m_Recording);
                                },
                                nullptr, &state});
    Report(1);
    EXPECT_EQ(state.m_Replaced.m_Context, &state);
    EXPECT_EQ(recorder.Take(), Reports());
    Report(2);
    EXPECT_EQ(recorder.Take(), (Reports{{2, "XmlParser"}}));
}

void Count(void* counter, unsigned int, const char*, ULONG) {
    ++*static_cast<std::atomic<int>*>(counter);
}

// The setter returns only after the last call into the old sink; the new one works already.
TEST(RVDev, ReplacingWaitsForTheCallsInTheOldSink) {
    constexpr unsigned int kStay = 1;
    struct Gate {
        std::atomic<bool> m_Entered = false;
        std::atomic<bool> m_Open = false;
        std::atomic<bool> m_Left = false;
    } gate;
    const Installed old({[](void* context, unsigned int code, const char*, ULONG) {
                             if (code != kStay) return;
                             auto& self = *static_cast<Gate*>(context);
                             self.m_Entered = true;
                             while (!self.m_Open)
                                 std::this_thread::yield();
                             self.m_Left = true;
                         },
                         nullptr, &gate});
    std::thread reporter([] { Report(kStay); });
    while (!gate.m_Entered)
        std::this_thread::yield();

    std::atomic<int> reached_new = 0;
    std::atomic<bool> returned = false;
    bool left_before_return = false;
    std::thread setter([&] {
        pSet_Programmer_Error_Sink({&Count, nullptr, &reached_new});
        left_before_return = gate.m_Left;
        returned = true;
    });
    while (reached_new == 0)
        Report(kStay + 1);
    // The setter has done its work; one that does not wait gets every chance to come back.
    for (int round = 0; round < 1000; ++round)
        std::this_thread::yield();
    EXPECT_FALSE(returned);
    gate.m_Open = true;
    setter.join();
    reporter.join();
    EXPECT_TRUE(left_before_return);
}

// Each sink's context ends right after it was replaced, with several threads reporting.
TEST(RVDev, ContextOfAReplacedSinkCanGo) {
    constexpr int kReporters = 3;
    constexpr int kSetters = 2;
    constexpr int kReplacements = 300;
    std::atomic<int> total = 0;
    const Installed outer({&Count, nullptr, &total});

    struct Counter {
        std::atomic<int>* m_Total;
    };
    std::atomic<bool> stop = false;
    std::atomic<int> reported = 0;
    std::vector<std::thread> reporters;
    for (int i = 0; i < kReporters; ++i)
        reporters.emplace_back([&] {
            while (!stop) {
                ++reported;
                Report(12);
            }
        });
    // Two setters take each other's sinks out, so every one of them owns a context until the one
    // who gets it back frees it.
    std::vector<std::thread> setters;
    for (int i = 0; i < kSetters; ++i)
        setters.emplace_back([&] {
            for (int round = 0; round < kReplacements; ++round) {
                const RVErrorSink before = pSet_Programmer_Error_Sink(
                    {[](void* context, unsigned int, const char*, ULONG) {
                         ++*static_cast<Counter*>(context)->m_Total;
                     },
                     nullptr, new Counter{&total}});
                if (before.m_Context != &total) delete static_cast<Counter*>(before.m_Context);
            }
        });
    for (std::thread& setter : setters)
        setter.join();
    stop = true;
    for (std::thread& reporter : reporters)
        reporter.join();
    delete static_cast<Counter*>(pSet_Programmer_Error_Sink({&Count, nullptr, &total}).m_Context);
    EXPECT_EQ(total, reported);
}

}  // namespace
