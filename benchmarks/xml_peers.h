// The other readers, each doing what a load and a walk of ours does: every name and every value is
// copied into variables that are used again and again.
#pragma once

#include <optional>
#include <string>

#include "xml_documents.h"

namespace rv_bench {

// What a peer's work took, without taking the result down again, and what a walk has seen.
struct Worked {
    double seconds = 0;
    std::optional<Counts> counts;
};

using Work = Worked (*)(const RVString& text);
using FileWork = Worked (*)(const std::string& path);

// Null where the peer is not installed.
extern const Work kPugixml_Walk;
extern const Work kPugixml_Load;
extern const Work kRapidxml_Walk;
extern const Work kLibxml2_Walk;
// Fed in reads of 1 MiB.
extern const FileWork kLibxml2_Walk_File;
extern const FileWork kExpat_Walk_File;

}  // namespace rv_bench
