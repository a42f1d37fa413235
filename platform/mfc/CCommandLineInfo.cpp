#include "CCommandLineInfo.h"

CCommandLineInfo::~CCommandLineInfo() = default;

void CCommandLineInfo::ParseParam(const char* word, BOOL flag, BOOL) {
    if (flag || m_nShellCommand == FileOpen) return;
    m_strFileName = word;
    m_nShellCommand = FileOpen;
}
