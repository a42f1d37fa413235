// The progress bar.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace attachments {

// Shows on a terminal how far a job is, once it has taken a second, and wipes the bar when it ends.
// Belongs to one thread.
class Progress {
public:
    explicit Progress(std::string label);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress() { Wipe(); }

    // Another `bytes` are to be done.
    void Expect(std::uint64_t bytes) { m_Total += bytes; }
    // Another `bytes` are done. Throws Failure when the user has asked the program to stop.
    void Advance(std::uint64_t bytes);
    // `bytes` of the present step are done, which is not counted yet; for steps that do not tell
    // how far they are. Never throws.
    void Glance(std::uint64_t bytes);
    // Takes the bar off the screen, to make room for a line of output.
    void Wipe();
    // Whether anybody sees it.
    bool Is_Shown() const { return m_Watched; }

private:
    using Clock = std::chrono::steady_clock;

    void Draw(std::uint64_t done);

    std::string m_Label;
    std::uint64_t m_Total = 0;
    std::uint64_t m_Done = 0;
    bool m_Watched;
    bool m_Drawn = false;
    Clock::time_point m_Start;
    Clock::time_point m_Next_Drawing;
};

}  // namespace attachments
