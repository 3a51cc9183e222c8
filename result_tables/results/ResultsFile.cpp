#include "result_tables/results/ResultsFile.h"

#include <algorithm>
#include <boost/algorithm/string/predicate.hpp>
#include <deque>
#include <functional>
#include <limits>
#include <locale>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "Business_Skin/Skin.h"
#include "result_tables/base/Family.h"
#include "result_tables/base/File.h"
#include "result_tables/base/Parallel.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/json/JsonShapes.h"
#include "result_tables/results/FastToolReader.h"
#include "result_tables/results/ToolDraft.h"
#include "result_tables/results/ToolLookahead.h"

namespace Kestrel::ResultTables {

namespace {

using DataType = MaxValueGroupContainer::DataType;
using Presence = JsonMember::Presence;
using JoinState = BodyJoinInterface::JoinState;

constexpr auto s_required = Presence::required;
constexpr auto s_optional = Presence::optional;
constexpr std::uint64_t s_largest32Bit = std::numeric_limits<std::uint32_t>::max();

/// The series that is being read: numbers in either form.
struct SeriesDraft {
  std::string quantity;
  double pair[2] = {};
  std::size_t pairSize = 0;
  int forms = 0;
  bool isPairs = false;
};

/// Any record of a step: the members of the four kinds of records together.
struct RecordDraft {
  GUIdentifier guid;
  GUIdentifier simulationUnitJoin;
  std::string id;
  std::string name;
  bool active = false;
  std::uint32_t state = 0;
  std::map<std::string, std::shared_ptr<SkinBase>, std::less<>> skins;
  std::shared_ptr<SkinBase>* skin = nullptr;  ///< the one that is being read
};

struct UnitDraft {
  std::optional<GUIdentifier> id;
  std::optional<std::string> name;
  bool isPassedOver = false;  ///< whose tools nobody wants
  std::optional<StepBounds> visibleSteps;
  std::deque<ToolDraft> tools;  ///< stay where they are
  std::unordered_set<std::string_view> toolIds;
  std::vector<EvalSimulationUnitJoinGUID> joinsDefinedInUnit;
  std::map<DataType, SimUnitMaxValuesProvider::ToolGrouping> toolGroupings;
  std::vector<std::shared_ptr<SimulationStep>> steps;
};

/// How many threads may read ahead of the reader: as many as have nothing else to do, for texts that are
/// worth it.
std::size_t threadsFor(std::string_view text) {
  constexpr std::size_t leastOfThread = std::size_t{4} << 20;
  return std::min(numberOfIdleProcessors(), std::max(text.size() / leastOfThread, std::size_t{1}) - 1);
}

/// The format of a results file as shapes whose functions fill the drafts.
class ResultsReader {
 public:
  ResultsReader(std::string const& name, WantedUnits const& wanted, ReadingWays ways)
      : m_wanted(wanted), m_ways(ways), m_json(name) {
    m_file.givenName = m_file.name = name;
  }

  /// Reads a text and keeps the numbers where text was that has been read.
  ResultsFile readAndUse(std::shared_ptr<FileText> const& text) {
    m_endOfTools = m_readText = text->data();
    m_fastReader = FastToolReader([this, text](std::size_t bytes) { return takeReadText(text, bytes); });
    auto file = read(text->text());
    text->cut(static_cast<std::size_t>(m_readText - text->data()));
    return file;
  }

  ResultsFile read(std::string_view text) {
    auto const threads = m_ways.threads.value_or(threadsFor(text));
    if (m_ways.atOnce && threads > 0)
      m_lookahead.emplace(text, threads,
                          m_wanted.empty() ? ToolLookahead::Series::kept : ToolLookahead::Series::passed);
    m_json.read(text, document());
    return std::move(m_file);
  }

 private:
  JsonShape document();
  JsonShape unit();
  JsonShape tool();
  JsonShape series(std::vector<JsonMember> members, std::function<void()> onEnd);
  JsonShape values();
  JsonShape pairs();
  JsonShape toolGroupings();
  JsonShape step();
  JsonShape suctionZone();
  JsonShape joiningTong();
  JsonShape join();
  JsonShape lineJoin();
  JsonShape skins();

  JsonShape state();
  JsonShape record(std::vector<JsonMember> members, std::function<void()> onEnd);

  [[nodiscard]] bool isUnitWanted() const;
  [[nodiscard]] char const* takeTool(char const* at, char const* end);
  SpareMemory takeReadText(std::shared_ptr<FileText> const& text, std::size_t bytes);
  void finishTool();
  void finishUnit();
  [[noreturn]] void refusePair() const;
  void refuseRepeatedGuid(bool added);

  /// The shape, read at once where that is wanted.
  [[nodiscard]] JsonShape atOnce(JsonShape shape, JsonReadAtOnce readAtOnce) const {
    return m_ways.atOnce ? jsonAtOnce(std::move(shape), std::move(readAtOnce)) : shape;
  }

  WantedUnits const& m_wanted;
  ReadingWays m_ways;
  JsonReader m_json;
  ResultsFile m_file;
  std::unordered_set<GUIdentifier> m_unitIds;
  UnitDraft m_unit;
  ToolDraft m_tool;
  SeriesDraft m_series;
  FastToolReader m_fastReader;
  char* m_readText = nullptr;          ///< text that has been read and is not used yet, where it may be used
  char const* m_endOfTools = nullptr;  ///< behind the last tool that has been read

  std::optional<ToolLookahead> m_lookahead;
  std::shared_ptr<SimulationStep> m_step;
  RecordDraft m_record;
  std::optional<double> m_rangeMinimum;
  std::optional<double> m_rangeMaximum;
};

JsonShape ResultsReader::state() {
  return jsonInteger(s_largest32Bit,
                     [this](std::uint64_t value) { m_record.state = static_cast<std::uint32_t>(value); });
}

JsonShape ResultsReader::document() {
  return jsonObject({
      {"format", s_required, jsonFormatName(m_json, "simulation-results")},
      {"version", s_required, jsonFormatVersion(m_json)},
      {"units", s_required, jsonArray(unit())},
  });
}

JsonShape ResultsReader::unit() {
  auto const toolList = jsonArray(tool(), [this] { m_unit.isPassedOver = !isUnitWanted(); });
  auto const joinsDefinedInUnit = jsonArray(
      jsonIdentifier(m_json, [this](GUIdentifier const& id) { m_unit.joinsDefinedInUnit.emplace_back(id); }));
  auto const steps = jsonArray(jsonOrNull(step(), [this] { m_unit.steps.push_back(nullptr); }));
  return jsonObject(
      {
          {"id", s_required, jsonIdentifier(m_json, [this](GUIdentifier const& id) { m_unit.id = id; })},
          {"name", s_required, jsonString([this](std::string_view name) { m_unit.name = name; })},
          {"visibleSteps", s_optional, jsonOrNull(jsonStepBounds(m_unit.visibleSteps), [] {})},
          {"tools", s_optional, toolList},
          {"joinsDefinedInUnit", s_optional, joinsDefinedInUnit},
          {"toolGroupings", s_optional, toolGroupings()},
          {"steps", s_optional, steps},
      },
      [this] { m_unit = {}; }, [this] { finishUnit(); });
}

JsonShape ResultsReader::tool() {
  auto const kind =
      jsonToolKind(m_json, [this](std::string_view, ToolForceDataType type) { m_tool.type = type; });
  auto const seriesList = jsonArray(series({{"quantity", s_required, jsonText(m_series.quantity)}}, [this] {
    m_tool.series.append(m_series.quantity,
                         std::make_shared<StepValues<double>>(m_fastReader.takeSeries(m_series.isPairs)));
  }));
  auto const tangentialForce =
      series({}, [this] { m_tool.tangentialForce = m_fastReader.takeSeries(m_series.isPairs); });
  auto const tool = jsonObject(
      {
          {"id", s_required, jsonText(m_tool.id)},
          {"kind", s_required, kind},
          {"series", s_optional, seriesList},
          {"tangentialForce", s_optional, tangentialForce},
      },
      [this] { m_tool = {}; }, [this] { finishTool(); });
  return atOnce(tool, [this](char const* at, char const* end) {
    auto const* const closing = takeTool(at, end);
    if (closing == nullptr) m_tool = {};
    return closing;
  });
}

JsonShape ResultsReader::series(std::vector<JsonMember> members, std::function<void()> onEnd) {
  members.push_back({"values", s_optional, values()});
  members.push_back({"pairs", s_optional, pairs()});
  return jsonObject(
      std::move(members), [this] { m_series = {}; },
      [this, onEnd = std::move(onEnd)] {
        if (m_series.forms != 1) {
          m_json.fail(tr("exactly one of {} and {}", quote("values"), quote("pairs")),
                      m_series.forms == 0 ? tr("none") : tr("both"));
        }
        onEnd();
      });
}

JsonShape ResultsReader::values() {
  auto const values = jsonArray(jsonSeriesNumber([this](double value) { m_fastReader.addValue(value); }),
                                [this] { ++m_series.forms; });
  return jsonAtOnce(values,
                    [this](char const* at, char const* end) { return m_fastReader.readValues(at, end); });
}

JsonShape ResultsReader::pairs() {
  auto const number = jsonSeriesNumber([this](double value) {
    if (m_series.pairSize < 2) m_series.pair[m_series.pairSize] = value;
    ++m_series.pairSize;
  });
  auto const pair = jsonArray(
      number, [this] { m_series.pairSize = 0; },
      [this] {
        if (m_series.pairSize != 2) refusePair();
        m_fastReader.addPair(m_series.pair[0], m_series.pair[1]);
      });
  auto const pairs = jsonArray(pair, [this] {
    ++m_series.forms;
    m_series.isPairs = true;
  });
  return jsonAtOnce(pairs,
                    [this](char const* at, char const* end) { return m_fastReader.readPairs(at, end); });
}

void ResultsReader::refusePair() const {
  m_json.fail(tr("a pair of a value and its companion"), tr("{} numbers", m_series.pairSize));
}

JsonShape ResultsReader::toolGroupings() {
  return jsonToolGroupings(groupedFamilyNames(), [this](std::string_view name) -> ToolGroups& {
    return m_unit.toolGroupings[familyNamed(name)->dataType];
  });
}

JsonShape ResultsReader::step() {
  return jsonObject(
      {
          {"suctionZones", s_optional, jsonArray(suctionZone())},
          {"joiningTongs", s_optional, jsonArray(joiningTong())},
          {"joins", s_optional, jsonArray(join())},
          {"lineJoins", s_optional, jsonArray(lineJoin())},
      },
      [this] { m_step = std::make_shared<SimulationStep>(); },
      [this] { m_unit.steps.push_back(std::exchange(m_step, nullptr)); });
}

JsonShape ResultsReader::record(std::vector<JsonMember> members, std::function<void()> onEnd) {
  return jsonObject(
      std::move(members), [this] { m_record = {}; }, std::move(onEnd));
}

void ResultsReader::refuseRepeatedGuid(bool added) {
  if (!added) m_json.fail(tr("an identifier that is unique in its list"), m_record.guid.toString(), "/guid");
}

JsonShape ResultsReader::suctionZone() {
  auto const active = jsonBoolean([this](bool value) { m_record.active = value; });
  return record({{"guid", s_required, jsonIdentifier(m_json, m_record.guid)},
                 {"name", s_required, jsonText(m_record.name)},
                 {"active", s_required, active}},
                [this] {
                  refuseRepeatedGuid(m_step->addSuctionZone(
                      EvalSuctionZoneGUID(m_record.guid),
                      std::make_shared<EvalSuctionZone>(m_record.name, m_record.active)));
                });
}

JsonShape ResultsReader::joiningTong() {
  return record({{"id", s_required, jsonText(m_record.id)},
                 {"name", s_required, jsonText(m_record.name)},
                 {"state", s_required, state()}},
                [this] {
                  if (m_step->getJoiningTongByID(m_record.id)) {
                    m_json.fail(tr("an identifier that is unique in its list"), quote(m_record.id), "/id");
                  }
                  m_step->addJoiningTong(std::make_shared<EvalJoiningTong>(m_record.id, m_record.name,
                                                                           JoinState{m_record.state}));
                });
}

JsonShape ResultsReader::join() {
  return record(
      {{"guid", s_required, jsonIdentifier(m_json, m_record.guid)},
       {"id", s_required, jsonText(m_record.id)},
       {"name", s_required, jsonText(m_record.name)},
       {"state", s_required, state()}},
      [this] {
        refuseRepeatedGuid(m_step->addJoin(
            EvalJoinGUID(m_record.guid),
            std::make_shared<SimulationBodyJoin>(m_record.id, m_record.name, JoinState{m_record.state})));
      });
}

JsonShape ResultsReader::lineJoin() {
  return record(
      {
          {"guid", s_required, jsonIdentifier(m_json, m_record.guid)},
          {"id", s_required, jsonText(m_record.id)},
          {"name", s_required, jsonText(m_record.name)},
          {"state", s_required, state()},
          {"simulationUnitJoin", s_required, jsonIdentifier(m_json, m_record.simulationUnitJoin)},
          {"skins", s_optional, skins()},
      },
      [this] {
        auto lineJoin =
            std::make_shared<SimulationBodyLineJoin>(m_record.id, m_record.name, JoinState{m_record.state},
                                                     EvalSimulationUnitJoinGUID(m_record.simulationUnitJoin));
        for (auto& [name, skin] : m_record.skins)
          lineJoin->setSkin(SkinKey(name, 0, "", ""), std::move(skin));
        refuseRepeatedGuid(m_step->addLineJoin(EvalLineJoinGUID(m_record.guid), std::move(lineJoin)));
      });
}

JsonShape ResultsReader::skins() {
  auto const bound = [](std::optional<double>& target) {
    return jsonOrNull(jsonNumber([&target](double value) { target = value; }), [] {});
  };
  auto const skin = jsonObject(
      {{"min", s_optional, bound(m_rangeMinimum)}, {"max", s_optional, bound(m_rangeMaximum)}},
      [this] {
        m_rangeMinimum.reset();
        m_rangeMaximum.reset();
      },
      [this] { *m_record.skin = std::make_shared<Skin<double>>(m_rangeMinimum, m_rangeMaximum); });
  auto const skinOfAnotherType = [this] { *m_record.skin = std::make_shared<Skin<int>>(); };
  auto const onName = [this](std::string_view name) {
    auto const [entry, isNew] = m_record.skins.emplace(name, nullptr);
    m_record.skin = &entry->second;
    return isNew;
  };
  return jsonMap(onName, jsonOrNull(skin, skinOfAnotherType));
}

/// As far as is known: a unit is whose id and name come behind its tools.
bool ResultsReader::isUnitWanted() const {
  if (m_wanted.empty() || !m_unit.id || !m_unit.name) return true;
  return std::ranges::any_of(m_wanted, [this](auto const& idOrName) {
    return isNamedBy(SimulationUnitId(*m_unit.id), *m_unit.name, idOrName);
  });
}

char const* ResultsReader::takeTool(char const* at, char const* end) {
  bool const areSeriesPassed = !m_wanted.empty();
  if (m_lookahead && m_unit.isPassedOver == areSeriesPassed) {
    if (auto const* const closing = m_lookahead->take(at, m_tool); closing != nullptr) return closing;
  }
  return m_unit.isPassedOver ? m_fastReader.passTool(at, end, m_tool)
                             : m_fastReader.readTool(at, end, m_tool);
}

SpareMemory ResultsReader::takeReadText(std::shared_ptr<FileText> const& text, std::size_t bytes) {
  void* begin = m_readText;
  auto size = static_cast<std::size_t>(std::max(m_endOfTools - m_readText, std::ptrdiff_t{0}));
  if (std::align(alignof(double), bytes, begin, size) == nullptr) return {};
  m_json.forgetBefore(m_endOfTools);
  m_readText += m_endOfTools - m_readText;
  return {text, begin, size};
}

void ResultsReader::finishTool() {
  m_endOfTools = m_json.at();
  auto const& tool = m_unit.tools.emplace_back(std::move(m_tool));
  if (!m_unit.toolIds.insert(tool.id).second) {
    m_json.fail(tr("an identifier that is unique in the unit"), quote(tool.id), "/id");
  }
}

void ResultsReader::finishUnit() {
  if (!m_unitIds.insert(*m_unit.id).second) {
    m_json.fail(tr("an identifier that is unique in the file"), m_unit.id->toString(), "/id");
  }
  checkStepBounds(m_json, m_unit.visibleSteps, m_unit.steps.size());
  auto unit = std::make_unique<SimulationUnit>(SimulationUnitId(*m_unit.id), *m_unit.name);
  if (m_unit.visibleSteps) {
    auto const [first, last] = *m_unit.visibleSteps;
    unit->setVisibleSteps(static_cast<unsigned int>(first), static_cast<unsigned int>(last));
  }
  m_unit.toolIds.clear();
  bool const hasTools = isUnitWanted();
  for (; hasTools && !m_unit.tools.empty(); m_unit.tools.pop_front()) {
    auto& tool = m_unit.tools.front();
    unit->addTool(std::move(tool.id), tool.type, std::move(tool.series), std::move(tool.tangentialForce));
  }
  for (auto const& join : m_unit.joinsDefinedInUnit) unit->addJoinDefinedInSimUnit(join);
  m_file.units.push_back({std::move(unit), std::make_shared<SimulationResult>(std::move(m_unit.steps)),
                          std::move(m_unit.toolGroupings), hasTools});
}

}  // namespace

ResultsFile readResultsFile(std::filesystem::path const& path, WantedUnits const& wanted) {
  auto file = readResults(nameOfInput(path.string()), readInput(path.string()), wanted);
  file.givenName = path.string();
  return file;
}

ResultsFile readResults(std::string const& name, FileText&& text, WantedUnits const& wanted,
                        ReadingWays ways) {
  return namingWhatIsTooLarge(name, [&] {
    auto const shared = std::make_shared<FileText>(std::move(text));
    return ResultsReader(name, wanted, ways).readAndUse(shared);
  });
}

ResultsFile readResults(std::string const& name, std::string_view text, WantedUnits const& wanted,
                        ReadingWays ways) {
  return namingWhatIsTooLarge(name, [&] { return ResultsReader(name, wanted, ways).read(text); });
}

bool isNamedBy(SimulationUnitId const& id, std::string const& name, std::string const& idOrName) {
  return name == idOrName || boost::algorithm::iequals(id.toString(), idOrName, std::locale::classic());
}

}  // namespace Kestrel::ResultTables
