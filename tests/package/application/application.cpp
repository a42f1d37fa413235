// Prints a text of its own resources, and the day that it tells of.
#include <RVUtils/RVUtils.h>

#include <cstdio>

int main() {
    char label[32];
    if (LoadStringA(GetModuleHandleA(nullptr), 40001, label, sizeof label) == 0)
        std::snprintf(label, sizeof label, "no resources");
    RVString text("20240228120000");
    RVDateTime moment(text);
    moment.Add_Date(0, 0, 2);
    moment.Get_Db_Value(text);
    std::printf("%s: %s\n", label, text.GetString());
    return 0;
}
