#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "result_tables/study/Database.h"
#include "result_tables/study/RunData.h"
#include "result_tables/tables/StudyRun.h"

namespace Kestrel::ResultTables {

/// What became of a run that was to be added.
enum class Added {
  asNew,
  asReplacement,  ///< of one of that name with other content
  notAgain,       ///< as it is there with the same content
  labelsOnly,     ///< as it is, but for its labels
};

/// The runs of many results files in a database. For one thread at a time; any number of processes use one
/// database at the same time. What cannot be done is an `Error` of one line, and the database stays as it
/// was.
class Study {
 public:
  /// `name` is a file or the address of a server. Where there is no study it is made, or where it is only to
  /// be read, an `Error`.
  Study(std::string const& name, DatabaseAccess access);

  /// What messages call it.
  [[nodiscard]] std::string const& name() const { return m_database->name(); }
  [[nodiscard]] Database& database() const { return *m_database; }

  /// In the order in which they were added first.
  [[nodiscard]] std::vector<StudyRun> runs() const;

  /// Whether a run of that name is stored with the same content, limits and selection.
  [[nodiscard]] bool has(StudyRun const& run) const;

  /// Stores a run whole, in one transaction. One of the same name keeps its place in the order. Labels
  /// replace those that are stored where there are any.
  Added add(RunData const& data);
  /// The same for a run that `has` says is stored, of which the labels alone are looked at. Nothing where
  /// others have removed or replaced it since.
  [[nodiscard]] std::optional<Added> addLabels(StudyRun const& run);

  /// Removes the runs of these names, all or, where one is not there, with an `Error`, none.
  void remove(std::vector<std::string> const& names);

  /// All that is stored of a run. An `Error` where there is none of that name.
  [[nodiscard]] RunData read(std::string const& run) const;

 private:
  std::unique_ptr<Database> m_database;
};

}  // namespace Kestrel::ResultTables
