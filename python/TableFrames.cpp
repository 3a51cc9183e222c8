#include "python/TableFrames.h"

#include <set>

#include "python/ValueColumns.h"
#include "result_tables/base/Family.h"

namespace py = pybind11;

namespace Kestrel::ResultTables {

namespace {

using Place = ResultTable::Place;

/// The columns that say where a value stands in the tables.
struct PlaceColumns {
  explicit PlaceColumns(Frame& frame)
      : unit(frame.add<TextColumn>("unit")),
        unitId(frame.add<TextColumn>("unitId")),
        family(frame.add<TextColumn>("family")),
        group(frame.add<TextColumn>("group")),
        subGroup(frame.add<TextColumn>("subGroup")),
        item(frame.add<TextColumn>("item")) {}

  void add(std::string_view nameOfUnit, std::string_view idOfUnit, std::string_view nameOfFamily,
           std::string_view nameOfGroup, std::string_view nameOfSubGroup, std::string_view nameOfItem) {
    unit.add(nameOfUnit);
    unitId.add(idOfUnit);
    family.add(nameOfFamily);
    group.add(nameOfGroup);
    subGroup.add(nameOfSubGroup);
    item.add(nameOfItem);
  }

  /// The same of texts that many values have.
  struct Codes {
    TextColumn::Code unit;
    TextColumn::Code unitId;
    TextColumn::Code family;
    TextColumn::Code group = 0;
    TextColumn::Code subGroup = 0;
    TextColumn::Code item = 0;
  };
  [[nodiscard]] Codes codesOf(ResultTable const& table) {
    return {unit.codeOf(table.unit().getSimulationUnitName()),
            unitId.codeOf(table.container().simulationUnitId.toString()),
            family.codeOf(familyName(table.container().dataType))};
  }
  void add(Codes const& codes) {
    unit.add(codes.unit);
    unitId.add(codes.unitId);
    family.add(codes.family);
    group.add(codes.group);
    subGroup.add(codes.subGroup);
    item.add(codes.item);
  }

  TextColumn& unit;
  TextColumn& unitId;
  TextColumn& family;
  TextColumn& group;
  TextColumn& subGroup;
  TextColumn& item;
};

/// Calls `visit` with the place of each row of a section, its column being 0.
template <typename Visit>
void forEachRowOf(ResultTable const& table, std::size_t group, Visit const& visit) {
  auto const& subGroups = table.container().groups[group].subGroups;
  for (std::size_t i = 0; i < subGroups.size(); ++i) {
    for (std::size_t k = 0; k < subGroups[i].items.size(); ++k)
      visit(Place{group, i, k, 0}, subGroups[i], subGroups[i].items[k]);
  }
}

SectionFrame genSectionFrame(ResultTable const& table, std::size_t group) {
  auto const& container = table.container();
  auto const& shown = container.groups[group];
  SectionFrame frame{table.file(),
                     table.unit().getSimulationUnitName(),
                     container.simulationUnitId.toString(),
                     familyName(container.dataType),
                     table.title(),
                     shown.name,
                     shown.isTeachingGroup,
                     false,
                     {},
                     {},
                     {},
                     table.columns(group),
                     {}};
  std::vector<RealColumn*> columns;
  for (auto const& column : frame.columns) columns.push_back(&frame.values.add<RealColumn>(column.key));
  forEachRowOf(table, group, [&](Place const& place, auto const& subGroup, auto const& item) {
    frame.isGrouped = frame.isGrouped || !subGroup.name.empty();
    frame.subGroups.add(subGroup.name);
    frame.items.add(item.name);
    if (!table.isValid(item)) frame.invalidItems.push_back(item.name);
    auto const row = table.genRow(place.group, place.subGroup, place.item);
    for (std::size_t i = 0; i < columns.size(); ++i)
      columns[i]->add(i < row.size() ? shownValueOf(row[i]) : std::nullopt);
  });
  return frame;
}

}  // namespace

Frame genValuesFrame(std::vector<ResultTable> const& tables) {
  Frame frame;
  auto& file = frame.add<TextColumn>("file");
  PlaceColumns where(frame);
  auto& valid = frame.add<FlagColumn>("valid");
  ValueColumns what(frame);
  for (auto const& table : tables) {
    auto const fileCode = file.codeOf(table.file());
    auto place = where.codesOf(table);
    for (std::size_t group = 0; group < table.columns().size(); ++group) {
      place.group = where.group.codeOf(table.container().groups[group].name);
      auto const columns = what.codesOf(table.columns(group));
      forEachRowOf(table, group, [&](Place const& at, auto const& subGroup, auto const& item) {
        place.subGroup = where.subGroup.codeOf(subGroup.name);
        place.item = where.item.codeOf(item.name);
        auto const row = table.genRow(at.group, at.subGroup, at.item);
        bool const isValid = table.isValid(item);
        for (std::size_t i = 0; i < row.size(); ++i) {
          file.add(fileCode);
          where.add(place);
          valid.add(isValid);
          what.add(columns[i], row[i]);
        }
      });
    }
  }
  return frame;
}

std::vector<SectionFrame> genSectionFrames(std::vector<ResultTable> const& tables) {
  std::vector<SectionFrame> sections;
  for (auto const& table : tables) {
    for (std::size_t group = 0; group < table.columns().size(); ++group)
      sections.push_back(genSectionFrame(table, group));
  }
  return sections;
}

py::dict SectionFrame::take() {
  py::dict names;
  py::dict units;
  py::dict limits;
  for (auto const& column : columns) {
    auto const key = pythonText(column.key);
    names[key] = pythonText(column.shownName());
    units[key] = pythonText(column.unit);
    if (column.limit) limits[key] = column.limit->value;
  }
  py::list invalid;
  for (auto const& item : invalidItems) invalid.append(pythonText(item));
  py::dict about;
  about["file"] = pythonText(file);
  about["unit"] = pythonText(unit);
  about["unitId"] = pythonText(unitId);
  about["family"] = pythonText(family);
  about["title"] = pythonText(title);
  about["group"] = pythonText(group);
  about["teaching"] = isTeaching;
  about["columns"] = names;
  about["units"] = units;
  about["limits"] = limits;
  about["invalid"] = invalid;
  py::dict section;
  section["attrs"] = about;
  section["subGroup"] = isGrouped ? subGroups.take() : py::none();
  section["item"] = items.take();
  section["columns"] = values.take();
  return section;
}

FindingsFrame genFindingsFrame(std::vector<ResultTable> const& tables) {
  FindingsFrame found;
  auto& file = found.findings.add<TextColumn>("file");
  PlaceColumns where(found.findings);
  auto& kind = found.findings.add<TextColumn>("kind");
  auto& key = found.findings.add<TextColumn>("key");
  auto& column = found.findings.add<TextColumn>("column");
  auto& value = found.findings.add<RealColumn>("value");
  auto& limit = found.findings.add<RealColumn>("limit");
  auto& step = found.findings.add<IntegerColumn>("step");
  auto& time = found.findings.add<RealColumn>("time");
  for (auto const& table : tables) {
    auto const findings = genFindings(table);
    found.compared += findings.countCompared();
    found.withoutData += findings.countWithoutData();
    findings.forEachFinding([&](Finding const& finding) {
      auto const& place = finding.place;
      file.add(table.file());
      where.add(findings.unit, findings.unitId, findings.family, place.group, place.subGroup, place.item);
      kind.add(nameOf(finding.kind));
      if (finding.value == nullptr) {
        key.addNone();
        column.addNone();
        value.add(std::nullopt);
        limit.add(std::nullopt);
        step.add(std::nullopt);
        time.add(std::nullopt);
        return;
      }
      auto const& checked = *finding.value;
      key.add(place.column->key);
      column.add(place.column->tableDisplayName);
      value.add(shownValueOf({checked.value, {{}, {}, {}, checked.count, checked.nanCount}, false}));
      limit.add(place.column->limit->value);
      step.add(asInteger(checked.step));
      time.add(checked.time);
    });
  }
  return found;
}

namespace {

/// Missing where one of the files has no such value, or no data for it.
std::optional<double> shownValueOf(std::optional<ComparedValue> const& value) {
  if (!value) return std::nullopt;
  return ResultTables::shownValueOf(
      TableValue{value->value, {{}, {}, {}, value->count, value->nanCount}, false});
}

std::optional<bool> flagOf(std::optional<ComparedValue> const& value, bool ComparedValue::*flag) {
  return value ? std::optional(*value.*flag) : std::nullopt;
}

}  // namespace

Frame genDifferencesFrame(ResultDifferences const& differences) {
  Frame frame;
  PlaceColumns where(frame);
  auto& key = frame.add<TextColumn>("key");
  auto& column = frame.add<TextColumn>("column");
  auto& kind = frame.add<TextColumn>("kind");
  auto& before = frame.add<RealColumn>("before");
  auto& after = frame.add<RealColumn>("after");
  auto& change = frame.add<RealColumn>("change");
  auto& relative = frame.add<RealColumn>("relative");
  auto& validBefore = frame.add<OptionalFlagColumn>("validBefore");
  auto& validAfter = frame.add<OptionalFlagColumn>("validAfter");
  auto& exceededBefore = frame.add<OptionalFlagColumn>("exceededBefore");
  auto& exceededAfter = frame.add<OptionalFlagColumn>("exceededAfter");
  for (auto const& table : differences.tables) {
    for (auto const& row : table.rows) {
      for (auto const& value : row.values) {
        where.add(table.unit, table.unitId, table.family, row.group, row.subGroup, row.item);
        key.add(value.column->key);
        column.add(value.column->tableDisplayName);
        kind.add(nameOf(value.kind));
        before.add(shownValueOf(value.before));
        after.add(shownValueOf(value.after));
        change.add(value.change());
        relative.add(value.relativeChange());
        validBefore.add(flagOf(value.before, &ComparedValue::isValid));
        validAfter.add(flagOf(value.after, &ComparedValue::isValid));
        exceededBefore.add(flagOf(value.before, &ComparedValue::isExceeded));
        exceededAfter.add(flagOf(value.after, &ComparedValue::isExceeded));
      }
    }
  }
  return frame;
}

}  // namespace Kestrel::ResultTables
