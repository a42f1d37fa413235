#include "recording_manager.h"

#include <cstdio>
#include <mutex>

namespace {

std::mutex g_Mutex;

template <class... Values>
void Record(const char* format, Values... values) {
    char call[600];
    std::snprintf(call, sizeof call, format, values...);
    const std::lock_guard lock(g_Mutex);
    rv_test::The_Recording().calls.emplace_back(call);
}

}  // namespace

rv_test::Recording& rv_test::The_Recording() {
    static Recording recording;
    return recording;
}

using rv_test::The_Recording;

class RVLanguageManager::State {
public:
    std::string m_Directory;
};

RVLanguageManager::RVLanguageManager(const RVString& directory, const RVString& application)
    : m_State(new State{directory.GetString()}) {
    Record("make %s|%s", directory.GetString(), application.GetString());
}

RVLanguageManager::~RVLanguageManager() {
    Record("end%s", "");
    delete m_State;
}

bool RVLanguageManager::Open_Language(unsigned short language, bool first, bool second) {
    Record("open %x %d %d", unsigned{language}, first, second);
    const auto& languages = The_Recording().languages;
    return languages.contains({m_State->m_Directory, language}) ||
           languages.contains({"*", language});
}

bool RVLanguageManager::Get_Translated_Item(ULONG module, ULONG string, RVString& text,
                                            ULONG* language) {
    Record("string %u/%u%s", module, string, language || !text.IsEmpty() ? " and more" : "");
    if (The_Recording().while_asked) The_Recording().while_asked();
    const auto found = The_Recording().texts.find({module, string});
    if (found != The_Recording().texts.end()) text = found->second.c_str();
    return false;  // nobody is to look at it
}

bool RVLanguageManager::Get_Translated_Item(ULONG image, void** handle, unsigned int* kind) {
    Record("image %u%s", image, *handle || *kind ? " and more" : "");
    if (The_Recording().while_asked) The_Recording().while_asked();
    const auto found = The_Recording().images.find(image);
    if (found != The_Recording().images.end()) *handle = found->second;
    return false;
}

bool RVLanguageManager::Is_Language_Message(unsigned int message, unsigned int first, LONG second) {
    Record("message %x %x %d", message, first, static_cast<int>(second));
    return The_Recording().knows_messages;
}

bool RVLanguageManager::Get_Translation_Info(RV_file_info2&) {
    Record("info%s", "");
    return false;
}

bool RVLanguageManager::Set_Live_Update_Mode(bool on) {
    Record("live %d", on);
    return false;
}

void rvGet_Language_Id(unsigned short* first, unsigned short* second) {
    *first = The_Recording().system;
    *second = The_Recording().user;
}

unsigned int rvGet_Language_Tools_Message_Id() {
    return rv_test::kToolsMessage;
}
