// Shows a document's attachments:
//
//     workbench DOCUMENT [PICTURE [COLUMN...]]
//
// On Windows, until the user closes the window. Elsewhere there is no screen: what a user would see
// goes to a PNG file, after a click on the header of each column named, from 0. Texts are in the
// user's language where the current directory has it (see language).

#include <RVUtils/SettingsHost.h>

#include <cstdio>

#include "run.h"

namespace {

int Refuse(const char* what, const char* which) {
    std::fprintf(stderr, "workbench: %s: %s\n", what, which);
    return 1;
}

int Show(IUnknown* settings, RVResourceLoader& items, int argc, char** argv) {
    workbench::Document document;
    if (!workbench::Read_Document(argv[1], document))
        return Refuse("there is no document to be read", argv[1]);
    workbench::Window window(settings, document);
    if (!window.Show(items)) return Refuse("the system refuses a window", argv[1]);
    return workbench::Run(window, {argv + 2, argv + argc});
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc < 2) {
        std::fputs("usage: workbench DOCUMENT [PICTURE [COLUMN...]]\n", stderr);
        return 2;
    }
    RVResourceLoader items;
    RVLanguageManager* manager = nullptr;
    HINSTANCE const module = GetModuleHandleA(nullptr);
    if (!pInit_Language_Support(items, manager, "wkbn", module))
        items.Set_Config(nullptr, 0, module);
    IUnknown* const settings = pCreate_Settings_Host();
    const int code = Show(settings, items, argc, argv);
    if (settings) settings->Release();
    pCleanup_Language_Support(items, manager);
    return code;
} catch (CException* error) {
    error->Delete();
    return Refuse("there is not enough memory", argv[1]);
}
