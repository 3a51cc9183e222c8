#include "result_tables/command/StudyAdding.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <map>
#include <mutex>

#include "result_tables/base/Error.h"
#include "result_tables/base/Parallel.h"
#include "result_tables/base/Progress.h"
#include "result_tables/base/Text.h"
#include "result_tables/command/CommonOptions.h"
#include "result_tables/command/Message.h"
#include "result_tables/study/FileRun.h"
#include "result_tables/study/Study.h"

namespace Kestrel::ResultTables {

namespace {

using Count = Arguments::Count;

struct AddOptions {
  std::string database;
  std::vector<std::string> results;
  std::optional<std::string> run;
  std::map<std::string, std::string> labels;
  TableSelection selection;
  std::string limits;
  std::size_t jobs = numberOfProcessors();
};

void takeLabel(std::map<std::string, std::string>& labels, std::string const& text) {
  auto const mark = text.find('=');
  if (mark == std::string::npos || mark == 0)
    throw Error(tr("--label: expected KEY=VALUE, found {}", quote(text)));
  checkStorable("--label", text);
  if (!labels.emplace(text.substr(0, mark), text.substr(mark + 1)).second)
    throw Error(tr("--label: expected each key once, found {} twice", quote(text.substr(0, mark))));
}

/// A study, of which all runs are added.
bool isStudy(std::string const& results) { return isServerAddress(results) || isDatabaseFile(results); }

std::string runNameOf(std::string const& results, AddOptions const& options) {
  return options.run ? *options.run : usualRunNameOf(results);
}

/// A study is added as it is: what says how results are read says nothing of it.
void checkStudies(AddOptions const& options) {
  auto const& [units, families, teaching] = options.selection;
  if (units.empty() && families.empty() && !teaching && options.limits.empty()) return;
  for (auto const& results : options.results) {
    if (!isStudy(results)) continue;
    throw Error(tr(
        "RESULTS: expected results files beside a selection or --limits, found the study {}, whose runs are "
        "added as they are",
        quote(results)));
  }
}

/// Two files must not replace each other, and one name is for one file.
void checkNames(AddOptions const& options) {
  std::map<std::string, std::string> fileOfRun;
  for (auto const& results : options.results) {
    if (options.run && (options.results.size() > 1 || isStudy(results)))
      throw Error(tr("--run: expected one results file, as each has a name of its own, found others"));
    if (isStudy(results)) continue;
    if (!options.run && results == s_standardStream)
      throw Error(tr("RESULTS: expected --run with the name of the run beside standard input, found none"));
    auto const name = runNameOf(results, options);
    if (auto const [other, isNew] = fileOfRun.emplace(name, results); !isNew) {
      throw Error(tr("RESULTS: expected files whose names without suffix differ, found {} and {}",
                     quote(other->second), quote(results)));
    }
  }
}

std::string describe(Added added, StudyRun const& run) {
  auto const name = toPrintable(run.name);
  switch (added) {
    case Added::asNew:
      return tr("{}: added, {} values", name, run.valueCount);
    case Added::asReplacement:
      return tr("{}: replaced, as the content is another; {} values", name, run.valueCount);
    case Added::labelsOnly:
      return tr("{}: given other labels, as the content is the same", name);
    case Added::notAgain:
      return tr("{}: unchanged, as the content is the same", name);
  }
  return {};
}

/// Lets what is numbered from 0 happen in this order, on whatever threads.
class Turns {
 public:
  /// Waits for all before `index`. REQUIRES: called once for each index, not by fewer threads than wait.
  void take(std::size_t index, std::function<void()> const& act) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_next == index; });
    act();
    ++m_next;
    m_changed.notify_all();
  }

 private:
  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::size_t m_next = 0;
};

/// Adds files to a study: reads several at the same time, and stores them one after the other in the order
/// in which they were given.
class Adding {
 public:
  explicit Adding(AddOptions const& options)
      : m_options(options), m_limits(options.limits), m_study(options.database, DatabaseAccess::write) {
    m_limits.checkFor(options.results);
  }

  /// What is said of each file.
  struct Outcome {
    std::vector<std::string> done;
    std::vector<std::string> messages;
  };

  Outcome add(std::size_t index) {
    auto const& results = m_options.results[index];
    Outcome outcome;
    std::optional<Content> content;
    if (!isStudy(results)) {
      try {
        content = read(results, false);
      } catch (std::exception const& error) {
        outcome.messages.emplace_back(error.what());
      }
    }
    m_turns.take(index, [&] {
      try {
        if (content) outcome.done.push_back(store(results, *content));
        if (isStudy(results)) addStudy(results, outcome.done);
      } catch (std::exception const& error) {
        outcome.messages.emplace_back(error.what());
      }
    });
    return outcome;
  }

 private:
  /// What is to be stored of a file; the run alone where that is stored.
  struct Content {
    RunData data;
    bool isWhole = false;
  };

  Content read(std::string const& results, bool isWhole) {
    FileRun file(runNameOf(results, m_options), results, m_options.labels, m_options.selection, m_limits);
    if (!isWhole && isStored(file.run())) return {{file.run(), {}, {}, {}}};
    return {std::move(file).read(), true};
  }

  bool isStored(StudyRun const& run) {
    std::scoped_lock const lock(m_mutex);
    return m_study.has(run);
  }

  std::string store(std::string const& results, Content& content) {
    if (!content.isWhole) {
      if (auto const done = storeLabels(content.data.run)) return *done;
      content = read(results, true);
    }
    content.data.run.added = timeOfAdding();
    return store(content.data);
  }

  std::string store(RunData const& data) {
    std::scoped_lock const lock(m_mutex);
    return describe(m_study.add(data), data.run);
  }

  /// Nothing where others have removed or replaced the run since it was looked for.
  std::optional<std::string> storeLabels(StudyRun const& run) {
    std::scoped_lock const lock(m_mutex);
    auto const added = m_study.addLabels(run);
    return added ? std::optional(describe(*added, run)) : std::nullopt;
  }

  void addStudy(std::string const& name, std::vector<std::string>& done) {
    Study const other(name, DatabaseAccess::read);
    for (auto run : other.runs()) {
      for (auto const& [key, value] : m_options.labels) run.labels[key] = value;
      auto said = isStored(run) ? storeLabels(run) : std::nullopt;
      if (!said) {
        auto data = other.read(run.name);
        data.run.labels = run.labels;
        said = store(data);
      }
      done.push_back(*said);
    }
  }

  AddOptions const& m_options;
  NamedLimits m_limits;
  Study m_study;
  std::mutex m_mutex;  ///< of the study
  Turns m_turns;
};

ExitCode addToStudy(AddOptions const& options) {
  checkNames(options);
  checkStudies(options);
  if (options.run) checkStorable("--run", *options.run);
  Adding adding(options);
  std::vector<Adding::Outcome> outcomes(options.results.size());
  {
    Progress progress(outcomes.size());
    forEachInParallel(outcomes.size(), options.jobs, [&](std::size_t i) {
      outcomes[i] = adding.add(i);
      progress.countOne();
    });
  }
  bool hasErrors = false;
  for (auto const& outcome : outcomes) {
    for (auto const& line : outcome.done) writeToStandardOutput(line + '\n');
    for (auto const& message : outcome.messages) printMessage(message);
    hasErrors = hasErrors || !outcome.messages.empty();
  }
  return hasErrors ? ExitCode::failed : ExitCode::nothingFound;
}

}  // namespace

Run declareStudyAdd(Arguments& arguments) {
  auto const options = std::make_shared<AddOptions>();
  addStudyName(arguments, options->database);
  arguments.operand("RESULTS", Count::atLeastOne,
                    tr("Results files, and studies of which all runs are added; - is standard input"),
                    into(options->results), {Offer::Kind::resultsFiles});
  arguments.option("--run", "NAME", Count::atMostOne,
                   tr("Name of the run; the file's path without its suffix when it is not named"),
                   [options = options.get()](std::string const& name) { options->run = name; });
  arguments.option("--label", "KEY=VALUE", Count::any,
                   tr("What is to be known of the runs besides; can be repeated"),
                   [options = options.get()](std::string const& text) { takeLabel(options->labels, text); });
  addSelection(arguments, options->selection);
  addLimits(arguments, options->limits);
  arguments.option("--jobs", "N", Count::atMostOne,
                   tr("Files to read at the same time; as many as there are processors when it is not named"),
                   [options = options.get()](std::string const& text) {
                     options->jobs = countFromText("--jobs", text, 1024);
                   });
  return [options] { return addToStudy(*options); };
}

}  // namespace Kestrel::ResultTables
