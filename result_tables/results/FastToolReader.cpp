#include "result_tables/results/FastToolReader.h"

#include <memory>

#include "result_tables/base/ToolKind.h"

namespace Kestrel::ResultTables {

namespace {

bool takeValues(JsonCursor& json, NumberStore<double>& values) {
  return json.takeElements<']'>([&] {
    double value = 0.0;
    if (!json.takeSeriesNumber(value)) return false;
    values.add(value);
    return true;
  });
}

bool takePairs(JsonCursor& json, NumberStore<StepValues<double>::Pair>& pairs) {
  return json.takeElements<']'>([&] {
    StepValues<double>::Pair pair;
    if (!json.take('[') || !json.takeSeriesNumber(pair.first) || !json.take(',') ||
        !json.takeSeriesNumber(pair.second) || !json.take(']'))
      return false;
    pairs.add(pair);
    return true;
  });
}

/// Takes the members of an object, up to before its brace: `member(name)` takes the value, if it is one of
/// its own.
template <typename Member>
bool takeMembers(JsonCursor& json, Member const& member) {
  return json.takeElements<'}'>([&] {
    std::string_view name;
    return json.takeText(name) && json.take(':') && member(name);
  });
}

/// True the first time.
bool once(bool& seen) { return !std::exchange(seen, true); }

}  // namespace

char const* FastToolReader::readValues(char const* at, char const* end) {
  JsonCursor json(at, end);
  if (takeValues(json, m_values)) return json.at();
  m_values.drop();
  return nullptr;
}

char const* FastToolReader::readPairs(char const* at, char const* end) {
  JsonCursor json(at, end);
  if (takePairs(json, m_pairs)) return json.at();
  m_pairs.drop();
  return nullptr;
}

StepValues<double> FastToolReader::takeSeries(bool isPairs) {
  auto const make = [](auto owner, auto numbers) { return StepValues<double>(std::move(owner), numbers); };
  return isPairs ? m_pairs.close(make) : m_values.close(make);
}

bool FastToolReader::takeSeriesObject(JsonCursor& json, std::string_view* quantity,
                                      StepValues<double>& series) {
  bool hasQuantity = quantity == nullptr;
  bool hasNumbers = false;
  bool isPairs = false;
  bool const isTaken =
      json.take('{') && takeMembers(json, [&](std::string_view name) {
        if (name == "quantity" && once(hasQuantity)) return json.takeText(*quantity);
        if (!json.take('[')) return false;
        isPairs = name == "pairs";
        if ((!isPairs && name != "values") || !once(hasNumbers)) return false;
        return (isPairs ? takePairs(json, m_pairs) : takeValues(json, m_values)) && json.take(']');
      });
  if (!isTaken || !json.take('}') || !hasQuantity || !hasNumbers) {
    m_values.drop();
    m_pairs.drop();
    return false;
  }
  series = takeSeries(isPairs);
  return true;
}

bool FastToolReader::takeSeriesList(JsonCursor& json, ToolDraft& tool) {
  m_seriesOfTool.clear();
  bool const isTaken = json.take('[') && json.takeElements<']'>([&] {
    auto& [quantity, series] = m_seriesOfTool.emplace_back();
    return takeSeriesObject(json, &quantity, series);
  });
  if (!isTaken || !json.take(']')) return false;
  // All series of a tool in one piece, too.
  auto const all = std::make_shared<StepValues<double>[]>(m_seriesOfTool.size());
  auto* series = all.get();
  tool.series.reserve(m_seriesOfTool.size());
  for (auto& [quantity, numbers] : m_seriesOfTool) {
    *series = std::move(numbers);
    tool.series.append(std::string(quantity), std::shared_ptr<StepValues<double>>(all, series++));
  }
  return true;
}

char const* FastToolReader::readTool(char const* at, char const* end, ToolDraft& tool) {
  JsonCursor json(at, end);
  bool hasId = false;
  bool hasKind = false;
  bool hasSeries = false;
  bool hasTangentialForce = false;
  bool const isTaken = takeMembers(json, [&](std::string_view name) {
    std::string_view text;
    if (name == "series") return once(hasSeries) && takeSeriesList(json, tool);
    if (name == "tangentialForce")
      return once(hasTangentialForce) && takeSeriesObject(json, nullptr, tool.tangentialForce.emplace());
    if (!json.takeText(text)) return false;
    if (name == "id") {
      tool.id = text;
      return once(hasId);
    }
    auto const type = toolKindOf(text);
    if (name != "kind" || !type) return false;
    tool.type = *type;
    return once(hasKind);
  });
  return isTaken && hasId && hasKind ? json.at() : nullptr;
}

}  // namespace Kestrel::ResultTables
