#include "RVCmdLineInfo.h"

#include <utility>

RVCmdLineInfo::RVCmdLineInfo(CStringArray& words) : m_Words(words) {}

RVCmdLineInfo::~RVCmdLineInfo() = default;

void RVCmdLineInfo::ParseParam(const char* word, BOOL flag, BOOL) {
    CString element(flag ? "-" : "");
    element += word;
    m_Words.Add(std::move(element));
}
