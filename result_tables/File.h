#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace Kestrel::ResultTables {

/// The bytes of a file or a pipe. An `Error` names the file and the system's reason.
[[nodiscard]] std::string readFile(std::filesystem::path const& path);

/// Replaces the content of the file whole or, with an `Error`, not at all: the text is written to a new file
/// in the same folder, which takes the place of the old one when it is safely stored. A symbolic link is
/// followed, the permissions of an old file are kept, and one that may not be written stays as it is. What is
/// no regular file (a terminal, a pipe, a device) is written to directly.
void writeFile(std::filesystem::path const& path, std::string_view text);

/// Writes to standard output. A reader that has gone away is no error; anything else is an `Error`.
void writeToStandardOutput(std::string_view text);

}  // namespace Kestrel::ResultTables
