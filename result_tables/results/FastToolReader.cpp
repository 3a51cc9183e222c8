#include "result_tables/results/FastToolReader.h"

#include <memory>

#include "result_tables/base/ToolKind.h"

namespace Kestrel::ResultTables {

namespace {

template <bool isKept>
bool takeValues(JsonCursor& json, NumberStore<double>& values) {
  return json.takeElements<']'>([&] {
    double value = 0.0;
    if (!(isKept ? json.takeSeriesNumber(value) : json.passSeriesNumber())) return false;
    if constexpr (isKept) values.add(value);
    return true;
  });
}

template <bool isKept>
bool takePairs(JsonCursor& json, NumberStore<StepValues<double>::Pair>& pairs) {
  return json.takeElements<']'>([&] {
    StepValues<double>::Pair pair;
    auto const takeNumber = [&](double& value) {
      return isKept ? json.takeSeriesNumber(value) : json.passSeriesNumber();
    };
    if (!json.take('[') || !takeNumber(pair.first) || !json.take(',') || !takeNumber(pair.second) ||
        !json.take(']'))
      return false;
    if constexpr (isKept) pairs.add(pair);
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
  if (takeValues<true>(json, m_values)) return json.at();
  m_values.drop();
  return nullptr;
}

char const* FastToolReader::readPairs(char const* at, char const* end) {
  JsonCursor json(at, end);
  if (takePairs<true>(json, m_pairs)) return json.at();
  m_pairs.drop();
  return nullptr;
}

StepValues<double> FastToolReader::takeSeries(bool isPairs) {
  auto const make = [](auto owner, auto numbers) { return StepValues<double>(std::move(owner), numbers); };
  return isPairs ? m_pairs.close(make) : m_values.close(make);
}

template <bool isKept>
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
        return (isPairs ? takePairs<isKept>(json, m_pairs) : takeValues<isKept>(json, m_values)) &&
               json.take(']');
      });
  if (!isTaken || !json.take('}') || !hasQuantity || !hasNumbers) {
    m_values.drop();
    m_pairs.drop();
    return false;
  }
  if constexpr (isKept) series = takeSeries(isPairs);
  return true;
}

template <bool isKept>
bool FastToolReader::takeSeriesList(JsonCursor& json, ToolDraft& tool) {
  m_seriesOfTool.clear();
  bool const isTaken = json.take('[') && json.takeElements<']'>([&] {
    auto& [quantity, series] = m_seriesOfTool.emplace_back();
    return takeSeriesObject<isKept>(json, &quantity, series);
  });
  if (!isTaken || !json.take(']')) return false;
  if constexpr (!isKept) return true;
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

template <bool isKept>
char const* FastToolReader::takeTool(char const* at, char const* end, ToolDraft& tool) {
  JsonCursor json(at, end);
  bool hasId = false;
  bool hasKind = false;
  bool hasSeries = false;
  bool hasTangentialForce = false;
  bool const isTaken = takeMembers(json, [&](std::string_view name) {
    std::string_view text;
    if (name == "series") return once(hasSeries) && takeSeriesList<isKept>(json, tool);
    if (name == "tangentialForce")
      return once(hasTangentialForce) &&
             takeSeriesObject<isKept>(json, nullptr, tool.tangentialForce.emplace());
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

char const* FastToolReader::readTool(char const* at, char const* end, ToolDraft& tool) {
  return takeTool<true>(at, end, tool);
}

char const* FastToolReader::passTool(char const* at, char const* end, ToolDraft& tool) {
  return takeTool<false>(at, end, tool);
}

}  // namespace Kestrel::ResultTables
