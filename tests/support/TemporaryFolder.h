#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Kestrel {

/// A new folder that is removed with everything in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(TemporaryFolder const&) = delete;
  TemporaryFolder& operator=(TemporaryFolder const&) = delete;
  ~TemporaryFolder();

  [[nodiscard]] std::filesystem::path const& path() const { return m_path; }
  /// Writes a file of the folder and returns its path.
  // NOLINTNEXTLINE(modernize-use-nodiscard): called for the file as often as for its path
  std::filesystem::path write(std::string const& name, std::string const& content) const;
  /// The content of a file of the folder; fails the test where there is none.
  [[nodiscard]] std::string read(std::string const& name) const;
  /// The names of the files in the folder, or in one that is in it, sorted.
  [[nodiscard]] std::vector<std::string> names(std::string const& subFolder = "") const;

 private:
  std::filesystem::path m_path;
};

}  // namespace Kestrel
