#include <set>

#include "python/TableFrames.h"
#include "python/ValueColumns.h"
#include "result_tables/base/Family.h"

namespace Kestrel::ResultTables {

namespace {

/// A value of a run with where it stands in the tables, as CSV has it.
struct RunPlace {
  std::string_view run;
  std::string_view file;
  std::string_view unit;
  std::string_view unitId;
  std::string_view family;
  std::string_view group;
  std::string_view subGroup;
  std::string_view item;
};

struct RunPlaceColumns {
  explicit RunPlaceColumns(Frame& frame) {
    for (auto const* const name : {"run", "file", "unit", "unitId", "family", "group", "subGroup", "item"})
      columns.push_back(&frame.add<TextColumn>(name));
  }

  void add(RunPlace const& place) {
    auto column = columns.begin();
    for (auto const text : {place.run, place.file, place.unit, place.unitId, place.family, place.group,
                            place.subGroup, place.item})
      (*column++)->add(text);
  }

  std::vector<TextColumn*> columns;
};

/// What follows in it.
struct RunValueColumns {
  explicit RunValueColumns(Frame& frame)
      : occurrence(frame.add<CountColumn>("occurrence")),
        valid(frame.add<FlagColumn>("valid")),
        values(frame) {}

  void add(RunQuantity const& quantity, TableValue const& shown) {
    values.add({values.key.codeOf(quantity.key), values.column.codeOf(quantity.name()),
                values.valueUnit.codeOf(quantity.unit), valueOf(quantity.limit)},
               shown);
  }

  CountColumn& occurrence;
  FlagColumn& valid;
  ValueColumns values;
};

}  // namespace

Frame genRunsFrame(std::vector<StudyRun> const& runs) {
  std::set<std::string> labels;
  for (auto const& run : runs) {
    for (auto const& label : run.labels) labels.insert(label.first);
  }
  Frame frame;
  std::vector<std::pair<TextColumn*, std::string StudyRun::*>> texts;
  for (auto const& [name, member] :
       {std::pair("run", &StudyRun::name), std::pair("file", &StudyRun::file),
        std::pair("added", &StudyRun::added), std::pair("program", &StudyRun::program),
        std::pair("contentDigest", &StudyRun::contentDigest),
        std::pair("limitsDigest", &StudyRun::limitsDigest)})
    texts.emplace_back(&frame.add<TextColumn>(name), member);
  std::vector<std::pair<TextColumn*, std::string>> labelColumns;
  labelColumns.reserve(labels.size());
  for (auto const& label : labels) labelColumns.emplace_back(&frame.add<TextColumn>("label/" + label), label);
  auto& values = frame.add<CountColumn>("values");
  std::vector<std::pair<CountColumn*, std::size_t TableCounts::*>> counts;
  for (auto const& [name, member] :
       {std::pair("compared", &TableCounts::compared), std::pair("withoutData", &TableCounts::withoutData),
        std::pair("exceeded", &TableCounts::exceeded), std::pair("notANumber", &TableCounts::notANumber),
        std::pair("invalid", &TableCounts::invalid)})
    counts.emplace_back(&frame.add<CountColumn>(name), member);
  auto& worst = frame.add<RealColumn>("worstUtilisation");
  for (auto const& run : runs) {
    for (auto const& [column, member] : texts) column->add(run.*member);
    for (auto const& [column, label] : labelColumns) {
      auto const found = run.labels.find(label);
      found == run.labels.end() ? column->addNone() : column->add(found->second);
    }
    values.add(run.valueCount);
    for (auto const& [column, member] : counts) column->add(run.counts.*member);
    worst.add(run.worst);
  }
  return frame;
}

Frame genWorstFrame(WorstValues const& values) {
  Frame frame;
  RunPlaceColumns where(frame);
  auto& key = frame.add<TextColumn>("key");
  auto& column = frame.add<TextColumn>("column");
  auto& value = frame.add<RealColumn>("value");
  auto& valueUnit = frame.add<TextColumn>("valueUnit");
  auto& limit = frame.add<RealColumn>("limit");
  auto& utilisation = frame.add<RealColumn>("utilisation");
  auto& step = frame.add<IntegerColumn>("step");
  auto& time = frame.add<RealColumn>("time");
  for (auto const& worst : values) {
    where.add({worst.run, worst.file, worst.unit, worst.unitId, worst.family, worst.group, worst.subGroup,
               worst.item});
    key.add(worst.column.key);
    column.add(worst.column.tableDisplayName);
    value.add(shownValueOf(worst.value));
    valueUnit.add(worst.column.unit);
    limit.add(valueOf(worst.column.limit));
    utilisation.add(worst.utilisation);
    step.add(asInteger(worst.value.origin.step));
    time.add(worst.value.origin.companion);
  }
  return frame;
}

Frame genTrendFrame(Trends const& trends) {
  Frame frame;
  RunPlaceColumns where(frame);
  auto& label = frame.add<TextColumn>("label");
  RunValueColumns what(frame);
  for (auto const& trend : trends) {
    for (auto const& point : trend.points) {
      where.add({point.run, point.file, trend.unit, trend.unitId, trend.family, trend.group, trend.subGroup,
                 trend.item});
      label.add(point.label);
      what.occurrence.add(trend.occurrence);
      what.valid.add(point.isValid);
      what.add({trend.column.key, trend.column.unit, point.limit}, point.value);
    }
  }
  return frame;
}

Frame genRunValuesFrame(std::vector<RunValues> const& runs) {
  Frame frame;
  RunPlaceColumns where(frame);
  RunValueColumns what(frame);
  for (auto const& run : runs) {
    for (auto const& section : run.sections) {
      for (auto const& row : section.rows) {
        for (auto const& cell : row.cells) {
          where.add({run.run.name, run.run.file, section.unit, section.unitId, familyName(section.family),
                     section.name, row.subGroup, row.item});
          what.occurrence.add(row.occurrence);
          what.valid.add(row.isValid);
          what.add(section.columns[cell.column], cell.value);
        }
      }
    }
  }
  return frame;
}

}  // namespace Kestrel::ResultTables
