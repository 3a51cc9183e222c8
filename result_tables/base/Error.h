#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace Kestrel::ResultTables {

/// Something that could not be done. `what()` is the one line that the user reads: what, where, expected,
/// found.
class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  /// The same for callers that go on with the parts: `path` is the file as it was named, `place` where in it
  /// as the line says it.
  Error(std::string const& line, std::string path, std::string place = {})
      : runtime_error(line),
        m_origin(std::make_shared<Origin const>(Origin{std::move(path), std::move(place)})) {}

  /// Empty where the line is about no file, or about the one that was asked for.
  [[nodiscard]] std::string path() const { return m_origin ? m_origin->path : std::string(); }
  /// A JSON pointer, or a line with its column; empty where the line is about all of the file.
  [[nodiscard]] std::string place() const { return m_origin ? m_origin->place : std::string(); }

 private:
  struct Origin {
    std::string path;
    std::string place;
  };

  std::shared_ptr<Origin const> m_origin;  ///< shared, as copies of exceptions must not throw
};

}  // namespace Kestrel::ResultTables
