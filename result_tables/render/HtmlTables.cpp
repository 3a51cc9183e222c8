#include "result_tables/render/HtmlTables.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <set>
#include <unordered_map>
#include <utility>

#include "result_tables/base/Family.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/HtmlPage.h"
#include "result_tables/render/HtmlSummary.h"
#include "result_tables/render/HtmlWriter.h"
#include "result_tables/render/TextLine.h"
#include "result_tables/tables/Findings.h"
#include "result_tables/tables/Series.h"

namespace Kestrel::ResultTables {

namespace {

constexpr std::size_t s_utilisationsWithCurves = 200;

/// Number of a section in the file, and row and column in it.
using Cell = std::array<std::size_t, 3>;

struct HtmlRow {
  ResultTable::Place place;
  bool isValid;
  std::vector<TableValue> values;
};

/// A section of a table with all of its values.
struct HtmlSection {
  ResultTable const* table;
  std::size_t group;
  bool saysWhatIsInvalid;  ///< whether an element that is not valid is a finding
  bool hasSubGroupNames;
  std::vector<HtmlRow> rows;

  [[nodiscard]] MaxValueGroup const& content() const { return table->container().groups[group]; }
  [[nodiscard]] std::vector<TableColumn> const& columns() const { return table->columns(group); }
  [[nodiscard]] MaxValueItem const& item(HtmlRow const& row) const {
    return content().subGroups[row.place.subGroup].items[row.place.item];
  }
  [[nodiscard]] std::string const& subGroup(HtmlRow const& row) const {
    return content().subGroups[row.place.subGroup].name;
  }

  [[nodiscard]] bool isInvalidFinding(HtmlRow const& row) const { return !row.isValid && saysWhatIsInvalid; }
  [[nodiscard]] bool isFinding(HtmlRow const& row, std::size_t column) const {
    auto const& value = row.values[column];
    return value.isExceeded || (columns()[column].limit && value.origin.nanCount > 0);
  }
  [[nodiscard]] bool hasFinding(HtmlRow const& row) const;
  /// Whether the value is one, or of an element that is.
  [[nodiscard]] bool hasFindingAt(HtmlRow const& row, std::size_t column) const {
    return isInvalidFinding(row) || isFinding(row, column);
  }

  /// The row of a value.
  [[nodiscard]] std::size_t rowAt(ResultTable::Place const& place) const;
};

bool HtmlSection::hasFinding(HtmlRow const& row) const {
  if (isInvalidFinding(row)) return true;
  for (std::size_t i = 0; i < row.values.size(); ++i) {
    if (isFinding(row, i)) return true;
  }
  return false;
}

std::size_t HtmlSection::rowAt(ResultTable::Place const& place) const {
  auto const key = std::pair(place.subGroup, place.item);
  auto const found = std::ranges::lower_bound(
      rows, key, {}, [](HtmlRow const& row) { return std::pair(row.place.subGroup, row.place.item); });
  return static_cast<std::size_t>(found - rows.begin());
}

ResultTable::Place placeOf(HtmlRow const& row, std::size_t column) {
  auto place = row.place;
  place.column = column;
  return place;
}

HtmlSection genHtmlSection(ResultTable const& table, std::size_t group) {
  HtmlSection section{&table, group, !table.container().invalidValuesText.empty(), false, {}};
  auto const& subGroups = section.content().subGroups;
  for (std::size_t i = 0; i < subGroups.size(); ++i) {
    section.hasSubGroupNames = section.hasSubGroupNames || !subGroups[i].name.empty();
    for (std::size_t k = 0; k < subGroups[i].items.size(); ++k)
      section.rows.push_back(
          {{group, i, k, 0}, table.isValid(subGroups[i].items[k]), table.genRow(group, i, k)});
  }
  return section;
}

/// Part of a list of values that belong to the columns of a row.
void appendPart(std::string& list, std::string_view part) {
  if (!list.empty()) list += ' ';
  list += part;
}

std::string plainValue(TableValue const& value) {
  if (!value.hasData()) return "-";
  return value.isNaN() ? "nan" : shortestForm(value.value);
}

std::string shownValue(TableValue const& value, int digits) {
  if (!value.hasData()) return std::string(s_noData);
  return value.isNaN() ? "NaN" : numberInHtml(value.value, digits);
}

std::string limitOf(TableColumn const& column, int digits) {
  auto text = "≤ " + numberInHtml(column.limit->value, digits);
  if (column.limit->unit != column.unit) text += ' ' + column.limit->unit;
  return text;
}

/// Writes the part of one file.
class HtmlFileWriter {
 public:
  HtmlFileWriter(TablesFile const& file, std::size_t index, TextStyle const& style)
      : m_style(style), m_highest(s_utilisationsWithCurves) {
    m_file.file = file;
    m_file.index = index;
  }

  HtmlFile write(std::span<ResultTable const> tables);

 private:
  void collect(ResultTable const& table);
  void summarise(HtmlSection const& section, std::size_t number);
  void listHighest();
  [[nodiscard]] std::string anchorOf(Cell const& cell) const;
  [[nodiscard]] std::string describe(HtmlSection const& section, HtmlRow const& row,
                                     std::size_t column) const;

  void writeTable(ResultTable const& table, std::string const& heading, std::size_t& section);
  void writeSection(HtmlSection const& section, std::size_t number, std::string const& family);
  void writeHead(HtmlSection const& section);
  void writeRow(HtmlSection const& section, std::size_t number, std::size_t row);
  void writeCell(HtmlSection const& section, Cell const& cell);

  void appendCurves();
  [[nodiscard]] bool isCurveWanted(Cell const& cell) const;
  [[nodiscard]] std::vector<Cell> cellsWithCurves() const;

  TextStyle m_style;
  HtmlFile m_file;
  HtmlWriter m_html;
  std::vector<HtmlSection> m_sections;
  HighestUtilisations m_highest;
  std::set<Cell> m_anchors;   ///< of the values that are listed
  std::set<Cell> m_utilised;  ///< those that take the most of their limits
};

void HtmlFileWriter::collect(ResultTable const& table) {
  m_file.counts.invalid += findInvalidItems(table).size();
  for (std::size_t i = 0; i < table.container().groups.size(); ++i) {
    m_sections.push_back(genHtmlSection(table, i));
    summarise(m_sections.back(), m_sections.size() - 1);
  }
}

void HtmlFileWriter::summarise(HtmlSection const& section, std::size_t number) {
  for (auto const& row : section.rows) {
    for (std::size_t c = 0; c < row.values.size(); ++c) {
      if (!section.columns()[c].limit) continue;
      m_file.counts.addLimited(row.values[c], row.isValid);
      auto const utilisation = utilisationOf(row.values[c], section.columns()[c].limit, row.isValid);
      if (utilisation) m_highest.add({*utilisation, number, placeOf(row, c), row.values[c]});
    }
  }
}

void HtmlFileWriter::listHighest() {
  for (auto const& utilised : m_highest.take()) {
    auto const& section = m_sections[utilised.table];
    Cell const cell{utilised.table, section.rowAt(utilised.place), utilised.place.column};
    m_utilised.insert(cell);
    if (m_anchors.size() == s_listedUtilisations) continue;
    m_anchors.insert(cell);
    auto value = shownValue(utilised.value, m_style.digits);
    if (auto const& unit = section.columns()[cell[2]].unit; !unit.empty()) value += ' ' + unit;
    m_file.highest.push_back({utilised.utilisation, utilised.value.isExceeded, anchorOf(cell),
                              describe(section, section.rows[cell[1]], cell[2]), std::move(value)});
  }
}

std::string HtmlFileWriter::anchorOf(Cell const& cell) const {
  return fmt::format("t{}x{}-r{}-c{}", m_file.index, cell[0], cell[1], cell[2]);
}

/// "OP20, Clamps, Forces, Left, Clamp 1, Max Normal Force"
std::string HtmlFileWriter::describe(HtmlSection const& section, HtmlRow const& row,
                                     std::size_t column) const {
  std::string text = section.table->unit().getSimulationUnitName();
  for (auto const& part : {section.table->title(), section.content().name, section.subGroup(row),
                           section.item(row).name, section.columns()[column].shownName()}) {
    if (!part.empty()) text += ", " + part;
  }
  return text;
}

HtmlFile HtmlFileWriter::write(std::span<ResultTable const> tables) {
  for (auto const& table : tables) collect(table);
  listHighest();
  std::size_t section = 0;
  for (std::size_t i = 0; i < tables.size(); ++i) {
    bool const isFirstOfUnit = i == 0 || &tables[i].unit() != &tables[i - 1].unit();
    if (isFirstOfUnit) {
      if (i > 0) m_html.close();
      m_html.open("section", {{"class", "unit"}, {"id", fmt::format("u{}x{}", m_file.index, i)}});
      m_html.element("h2", tables[i].unit().getSimulationUnitName(), {{"dir", "auto"}});
      m_html.element("p", m_file.file.name, {{"class", "file"}, {"dir", "auto"}});
    }
    m_html.open("section", {{"class", "family"}, {"id", fmt::format("f{}x{}", m_file.index, i)}});
    auto const heading = fmt::format("n{}x{}", m_file.index, i);
    m_html.element("h3", tables[i].title(), {{"id", heading}});
    writeTable(tables[i], heading, section);
    m_html.close();
  }
  m_file.tables = m_html.take();
  appendCurves();
  return std::move(m_file);
}

void HtmlFileWriter::writeTable(ResultTable const& table, std::string const& heading, std::size_t& section) {
  for (std::size_t i = 0; i < table.container().groups.size(); ++i, ++section)
    writeSection(m_sections[section], section, heading);
  if (table.container().groups.empty()) m_html.element("p", tr("no elements"), {{"class", "empty"}});
}

void HtmlFileWriter::writeSection(HtmlSection const& section, std::size_t number, std::string const& family) {
  auto const& table = *section.table;
  auto const head = fmt::format("h{}x{}", m_file.index, number);
  m_html.open("section", {{"class", "table"}});
  m_html.element("h4", section.content().name, {{"id", head}});
  m_html.open("table", {{"class", "data"},
                        {"id", fmt::format("t{}x{}", m_file.index, number)},
                        {"aria-labelledby", family + ' ' + head},
                        {"data-unit", table.unit().getSimulationUnitName()},
                        {"data-unit-id", table.container().simulationUnitId.toString()},
                        {"data-family", familyName(table.container().dataType)},
                        {"data-group", section.content().name},
                        {"data-rows", std::to_string(section.rows.size())}});
  writeHead(section);
  m_html.open("tbody");
  for (std::size_t i = 0; i < section.rows.size(); ++i) writeRow(section, number, i);
  m_html.close();
  m_html.close();
  if (section.rows.empty()) m_html.element("p", tr("no elements"), {{"class", "empty"}});
  m_html.close();
}

void HtmlFileWriter::writeHead(HtmlSection const& section) {
  m_html.open("thead");
  m_html.open("tr");
  m_html.element("th", tr("Element"), {{"scope", "col"}, {"data-type", "name"}});
  if (section.hasSubGroupNames) m_html.element("th", tr("Group"), {{"scope", "col"}, {"data-type", "text"}});
  for (auto const& column : section.columns()) {
    m_html.open("th", {{"scope", "col"},
                       {"data-type", "number"},
                       {"data-key", column.key},
                       {"data-unit", column.unit},
                       {"data-limit", column.limit ? shortestForm(column.limit->value) : std::string()}});
    m_html.text(column.shownName());
    if (!column.unit.empty()) m_html.element("span", column.unit, {{"class", "unit"}});
    if (column.limit) m_html.element("span", limitOf(column, m_style.digits), {{"class", "limit"}});
    m_html.close();
  }
  m_html.close();
  m_html.close();
}

void HtmlFileWriter::writeRow(HtmlSection const& section, std::size_t number, std::size_t index) {
  auto const& row = section.rows[index];
  std::string values;
  std::string steps;
  std::string times;
  for (auto const& value : row.values) {
    appendPart(values, plainValue(value));
    appendPart(steps, value.origin.step ? std::to_string(*value.origin.step) : "-");
    appendPart(times, value.origin.companion ? shortestForm(*value.origin.companion) : "-");
  }
  std::string marks;
  if (section.hasFinding(row)) appendPart(marks, "f");
  if (!row.isValid) appendPart(marks, "i");
  auto const known = [](std::string const& list) {
    return list.find_first_not_of("- ") == list.npos ? std::string_view() : std::string_view(list);
  };
  m_html.html("\n");
  m_html.open(
      "tr",
      {{"class", marks}, {"data-v", known(values)}, {"data-s", known(steps)}, {"data-t", known(times)}});
  m_html.open("th");
  m_html.text(section.table->displayName(section.item(row)));
  if (!row.isValid) appendHtmlMark(m_html, "?", tr("not valid"));
  m_html.close();
  if (section.hasSubGroupNames) m_html.element("td", section.subGroup(row));
  for (std::size_t i = 0; i < section.columns().size(); ++i) writeCell(section, {number, index, i});
  m_html.close();
}

void HtmlFileWriter::writeCell(HtmlSection const& section, Cell const& cell) {
  auto const& row = section.rows[cell[1]];
  if (cell[2] >= row.values.size()) return m_html.element("td", "");
  auto const& value = row.values[cell[2]];
  bool const hasNaN = value.origin.nanCount > 0;
  auto classes =
      utilisationClass(utilisationOf(value, section.columns()[cell[2]].limit, row.isValid), value.isExceeded);
  if (value.isExceeded) appendPart(classes, "x");
  if (hasNaN) appendPart(classes, "n");
  m_html.open("td", {{"class", classes}, {"id", m_anchors.contains(cell) ? anchorOf(cell) : std::string()}});
  m_html.text(shownValue(value, m_style.digits));
  if (value.isExceeded) appendHtmlMark(m_html, "!", tr("beyond its limit"));
  if (hasNaN) appendHtmlMark(m_html, "*", tr("its series holds values that are not numbers"));
  m_html.close();
}

bool HtmlFileWriter::isCurveWanted(Cell const& cell) const {
  auto const isOfFinding = [&] {
    return m_sections[cell[0]].hasFindingAt(m_sections[cell[0]].rows[cell[1]], cell[2]);
  };
  switch (m_style.curves) {
    case Curves::none:
      return false;
    case Curves::findings:
      return isOfFinding();
    case Curves::notable:
      return isOfFinding() || m_utilised.contains(cell);
    case Curves::all:
      return true;
  }
  return false;
}

std::vector<Cell> HtmlFileWriter::cellsWithCurves() const {
  std::vector<Cell> cells;
  for (std::size_t i = 0; i < m_sections.size(); ++i) {
    for (std::size_t r = 0; r < m_sections[i].rows.size(); ++r) {
      auto const& values = m_sections[i].rows[r].values;
      for (std::size_t c = 0; c < values.size(); ++c) {
        if (values[c].hasData() && isCurveWanted({i, r, c})) cells.push_back({i, r, c});
      }
    }
  }
  return cells;
}

/// Where there are many, so that the page stays small, curves have fewer points.
void HtmlFileWriter::appendCurves() {
  constexpr std::size_t pointsInAll = 500 * s_mostCurvePoints;
  auto const cells = cellsWithCurves();
  auto const points = std::clamp(pointsInAll / std::max<std::size_t>(cells.size(), 1), s_fewestCurvePoints,
                                 s_mostCurvePoints);
  for (auto const& cell : cells) {
    auto const& section = m_sections[cell[0]];
    auto const& row = section.rows[cell[1]];
    auto const utilisation =
        utilisationOf(row.values[cell[2]], section.columns()[cell[2]].limit, row.isValid);
    m_file.curves.push_back(
        {cell[0], cell[1], cell[2], m_style.curves == Curves::all || section.hasFindingAt(row, cell[2]),
         utilisation.value_or(0),
         genHtmlCurve(genTableSeries(*section.table, placeOf(row, cell[2])), decimalMarkInHtml(), points)});
  }
}

// ---- the page

/// Of the curves that are there for their utilisation alone, those of the highest of all files stay.
void dropLowCurves(std::vector<HtmlFile>& files) {
  std::vector<double> utilisations;
  for (auto const& file : files) {
    for (auto const& curve : file.curves) utilisations.push_back(curve.utilisation);
  }
  if (utilisations.size() <= s_utilisationsWithCurves) return;
  auto const last = utilisations.begin() + static_cast<std::ptrdiff_t>(s_utilisationsWithCurves) - 1;
  std::ranges::nth_element(utilisations, last, std::ranges::greater());
  double const lowest = *last;
  // Of those that take as much as the last of them the first stay.
  auto equal = std::count(utilisations.begin(), last + 1, lowest);
  for (auto& file : files) {
    std::erase_if(file.curves, [&](HtmlFile::Curve const& curve) {
      bool const isHigh = curve.utilisation > lowest || (curve.utilisation == lowest && equal-- > 0);
      return !isHigh && !curve.isWanted;
    });
  }
}

/// The shapes that several curves have, by their numbers in a list that they share.
class SharedShapes {
 public:
  explicit SharedShapes(std::vector<HtmlFile> const& files) {
    std::unordered_map<std::string_view, bool> isShared;
    for (auto const& file : files) {
      for (auto const& curve : file.curves) {
        for (auto const& shape : curve.curve.shapes) {
          auto const [known, isNew] = isShared.try_emplace(shape, false);
          if (isNew || known->second) continue;
          known->second = true;
          m_numbers.emplace(shape, m_list.size());
          m_list.push_back(shape);
        }
      }
    }
  }

  /// Number of the shape; none where no other curve has it.
  [[nodiscard]] std::optional<std::size_t> numberOf(std::string const& shape) const {
    auto const found = m_numbers.find(shape);
    return found == m_numbers.end() ? std::nullopt : std::optional(found->second);
  }
  [[nodiscard]] std::string list() const { return fmt::format("[{}]", fmt::join(m_list, ",")); }

 private:
  std::unordered_map<std::string_view, std::size_t> m_numbers;
  std::vector<std::string_view> m_list;
};

/// The shapes of a curve: those that it shares as pairs of numbers, the first and the last of a part of the
/// list.
std::string shapesOf(HtmlCurve const& curve, SharedShapes const& shared) {
  std::string json;
  std::optional<std::pair<std::size_t, std::size_t>> part;
  auto const append = [&json](std::string_view element) {
    json.append(json.empty() ? "" : ",").append(element);
  };
  auto const endPart = [&] {
    if (part) append(fmt::format("[{},{}]", part->first, part->second));
    part.reset();
  };
  for (auto const& shape : curve.shapes) {
    auto const number = shared.numberOf(shape);
    if (part && number == part->second + 1) {
      ++part->second;
      continue;
    }
    endPart();
    if (number)
      part = {*number, *number};
    else
      append(shape);
  }
  endPart();
  return json;
}

/// By table, row and column, beside the list of shared shapes.
std::string curvesAsJson(std::vector<HtmlFile> const& files) {
  SharedShapes const shared(files);
  auto json = fmt::format("{{\"shapes\":{}", shared.list());
  for (auto const& file : files) {
    HtmlFile::Curve const* last = nullptr;
    for (auto const& curve : file.curves) {
      bool const isNewTable = last == nullptr || last->table != curve.table;
      bool const isNewRow = isNewTable || last->row != curve.row;
      if (isNewRow && last != nullptr) json += isNewTable ? "}}" : "}";
      json += ',';
      if (isNewTable) fmt::format_to(std::back_inserter(json), "\"t{}x{}\":{{", file.index, curve.table);
      if (isNewRow) fmt::format_to(std::back_inserter(json), "\"{}\":{{", curve.row);
      fmt::format_to(std::back_inserter(json), "\"{}\":", curve.column);
      fmt::format_to(std::back_inserter(json), "{{{},\"s\":[{}]}}", curve.curve.head,
                     shapesOf(curve.curve, shared));
      last = &curve;
    }
    if (last != nullptr) json += "}}";
  }
  return json + '}';
}

TableCounts countsOf(std::vector<HtmlFile> const& files) {
  TableCounts counts;
  for (auto const& file : files) counts.add(file.counts);
  return counts;
}

std::pair<std::string_view, std::string> verdictOf(std::vector<HtmlFile> const& files,
                                                   TableCounts const& counts) {
  if (std::ranges::any_of(files, [](HtmlFile const& file) { return file.file.error.has_value(); }))
    return {"failed", tr("Not every file could be read")};
  if (counts.exceeded + counts.notANumber + counts.invalid > 0) return {"found", tr("There are findings")};
  if (counts.compared == 0) return {"nothing", tr("Not one value was compared with a limit")};
  return {"fine", tr("Nothing found")};
}

HtmlSummary summaryOf(std::vector<HtmlFile> const& files) {
  auto const counts = countsOf(files);
  auto const [kind, verdict] = verdictOf(files, counts);
  HtmlSummary summary{kind,
                      verdict,
                      {{"exceeded", tr("values beyond their limits"), counts.exceeded},
                       {"nan", tr("values with NaN"), counts.notANumber},
                       {"invalid", tr("invalid elements"), counts.invalid},
                       {"compared", tr("values compared"), counts.compared},
                       {"nodata", tr("without data"), counts.withoutData}},
                      {}};
  for (auto const& file : files) summary.files.push_back(file.file);
  return summary;
}

void writeHighest(HtmlWriter& html, std::vector<HtmlFile> const& files) {
  std::vector<std::pair<HtmlFile const*, HtmlFile::Utilised const*>> all;
  for (auto const& file : files) {
    for (auto const& utilised : file.highest) all.emplace_back(&file, &utilised);
  }
  if (all.empty()) return;
  std::ranges::stable_sort(all, std::ranges::greater(),
                           [](auto const& entry) { return entry.second->utilisation; });
  all.resize(std::min(all.size(), s_listedUtilisations));
  html.element("h3", tr("Highest utilisations"));
  html.open("ol", {{"class", "worst"}});
  for (auto const& [file, utilised] : all) {
    html.open("li");
    html.element("a", (files.size() > 1 ? file->file.name + ": " : std::string()) + utilised->place,
                 {{"href", '#' + utilised->anchor}, {"dir", "auto"}});
    html.text(" ");
    html.element("span", percentInHtml(utilised->utilisation),
                 {{"class", "u " + utilisationClass(utilised->utilisation, utilised->isExceeded)}});
    html.text(" ");
    html.element("span", utilised->value, {{"class", "value"}});
    html.close();
  }
  html.close();
}

}  // namespace

HtmlFile genHtmlFile(TablesFile const& file, std::span<ResultTable const> tables, std::size_t index,
                     TextStyle const& style) {
  return HtmlFileWriter(file, index, style).write(tables);
}

std::string renderHtmlFiles(std::string const& title, std::vector<HtmlFile>&& files) {
  dropLowCurves(files);
  HtmlWriter html;
  openHtmlSummary(html, summaryOf(files));
  writeHighest(html, files);
  html.close();
  for (auto const& file : files) html.html(file.tables);
  return renderHtmlPage({title, html.take(), curvesAsJson(files)});
}

std::string renderTablesAsHtml(Tables const& tables, TextStyle const& style) {
  std::vector<HtmlFile> files;
  std::span<ResultTable const> rest = tables.tables;
  for (auto const& file : tables.files) {
    files.push_back(genHtmlFile(file, rest.first(file.tableCount), files.size(), style));
    rest = rest.subspan(file.tableCount);
  }
  return renderHtmlFiles(tr("Result tables"), std::move(files));
}

}  // namespace Kestrel::ResultTables
