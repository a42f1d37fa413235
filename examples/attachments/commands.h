// What the program does. Everything that goes wrong is thrown as Failure, or is an exception of the
// class library.
#pragma once

#include <string>
#include <vector>

namespace attachments {

// Writes a new document `out` that carries `files`. A file that is such a document itself is nested
// in it. On failure there is no `out`.
void Pack(const std::string& out, const std::vector<std::string>& files);

// Prints the tree of `document`, with sizes: of the files it carries, or of the elements of one
// that carries none.
void List(const std::string& document);

// Writes the files that `document` carries into `folder`, which is made if need be; none that is
// there is overwritten. A nested document comes back as the file it was, and what it carries in a
// folder of its name with ".contents" behind. A damaged attachment is left out and told on standard
// error, and the others come out all the same; the Failure at the end counts them.
void Unpack(const std::string& document, const std::string& folder);

// Prints one line of a result. Throws Failure when it cannot be written.
void Print(const std::string& line);

// A number with its digits in groups of three.
[[nodiscard]] std::string Grouped(unsigned long long number);

// A count and what is counted: "1 file", "2 files".
[[nodiscard]] std::string Counted(std::size_t count, const std::string& noun);

}  // namespace attachments
