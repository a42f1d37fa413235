#include "progress.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "failure.h"
#include "system.h"

namespace attachments {
namespace {

constexpr auto kPatience = std::chrono::seconds(1);
constexpr auto kInterval = std::chrono::milliseconds(100);
constexpr std::size_t kCells = 40;
constexpr int kLineLength = 78;

}  // namespace

Progress::Progress(std::string label)
    : m_Label(std::move(label)),
      m_Watched(Is_Watched()),
      m_Start(Clock::now()),
      m_Next_Drawing(m_Start + kPatience) {}

void Progress::Wipe() {
    if (!m_Drawn) return;
    m_Drawn = false;
    std::fprintf(stderr, "\r%*s\r", kLineLength, "");
    std::fflush(stderr);
}

void Progress::Advance(std::uint64_t bytes) {
    if (Stop_Is_Asked())
        throw Failure(ExitCode::kStopped, "stopped; nothing unfinished is left behind");
    m_Done += bytes;
    Glance(0);
}

void Progress::Glance(std::uint64_t bytes) {
    if (!m_Watched || Clock::now() < m_Next_Drawing) return;
    Draw(std::min(m_Done + bytes, m_Total));
    m_Next_Drawing = Clock::now() + kInterval;
}

void Progress::Draw(std::uint64_t done) {
    const double part = m_Total > 0 ? static_cast<double>(done) / static_cast<double>(m_Total) : 0;
    const std::chrono::duration<double> elapsed = Clock::now() - m_Start;
    const auto full = static_cast<std::size_t>(part * kCells);
    const std::string bar = std::string(full, '#') + std::string(kCells - full, '.');
    std::fprintf(stderr, "\r%-10s [%s] %3.0f%% %7.1f MB/s", m_Label.c_str(), bar.c_str(),
                 part * 100, static_cast<double>(done) / 1e6 / elapsed.count());
    std::fflush(stderr);
    m_Drawn = true;
}

}  // namespace attachments
