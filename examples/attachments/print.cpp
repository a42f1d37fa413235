#include <cstdio>

#include "commands.h"
#include "failure.h"

namespace attachments {

void Print(const std::string& line) {
    if (std::printf("%s\n", line.c_str()) < 0)
        throw Failure(ExitCode::kFailed, "cannot write the result; look where the output goes");
}

std::string Grouped(unsigned long long number) {
    std::string text = std::to_string(number);
    for (std::size_t place = text.size(); place > 3; place -= 3)
        text.insert(place - 3, 1, ',');
    return text;
}

std::string Counted(std::size_t count, const std::string& noun) {
    return Grouped(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace attachments
