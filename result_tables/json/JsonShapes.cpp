#include "result_tables/json/JsonShapes.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <utility>

#include "result_tables/base/Text.h"
#include "result_tables/base/ToolKind.h"
#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

JsonShape jsonText(std::string& target) {
  return jsonString([&target](std::string_view value) { target = value; });
}

JsonShape jsonIdentifier(JsonReader const& reader, std::function<void(GUIdentifier const&)> onIdentifier) {
  return jsonString([&reader, onIdentifier = std::move(onIdentifier)](std::string_view value) {
    auto const id = GUIdentifier::fromString(value);
    if (!id) reader.fail(tr("a UUID of 8-4-4-4-12 hexadecimal digits"), quote(value));
    onIdentifier(*id);
  });
}

JsonShape jsonIdentifier(JsonReader const& reader, GUIdentifier& target) {
  return jsonIdentifier(reader, [&target](GUIdentifier const& id) { target = id; });
}

JsonShape jsonFormatName(JsonReader const& reader, std::string_view name) {
  return jsonString([&reader, expected = quote(name), name = std::string(name)](std::string_view value) {
    if (value != name) reader.fail(expected, quote(value));
  });
}

JsonShape jsonFormatVersion(JsonReader const& reader) {
  return jsonInteger(std::numeric_limits<std::uint32_t>::max(), [&reader](std::uint64_t value) {
    if (value != 1) reader.fail(tr("version {}", 1), tr("version {}", value));
  });
}

JsonShape jsonStepBounds(std::optional<StepBounds>& target) {
  auto const bound = [&target](std::uint64_t StepBounds::*member) {
    return jsonInteger(std::numeric_limits<std::uint32_t>::max(),
                       [&target, member](std::uint64_t value) { *target.*member = value; });
  };
  return jsonObject({{"first", JsonMember::Presence::required, bound(&StepBounds::first)},
                     {"last", JsonMember::Presence::required, bound(&StepBounds::last)}},
                    [&target] { target.emplace(); });
}

void checkStepBounds(JsonReader const& reader, std::optional<StepBounds> const& bounds, std::size_t steps) {
  if (!bounds) return;
  auto const check = [&](std::uint64_t step, std::string_view place) {
    if (step >= steps) reader.fail(tr("the index of one of {} steps", steps), std::to_string(step), place);
  };
  check(bounds->first, "/visibleSteps/first");
  check(bounds->last, "/visibleSteps/last");
}

JsonShape jsonToolKind(JsonReader const& reader,
                       std::function<void(std::string_view name, ToolForceDataType type)> onKind) {
  return jsonString([&reader, onKind = std::move(onKind)](std::string_view value) {
    auto const type = toolKindOf(value);
    if (!type) reader.fail(tr("one of {}", toolKindNames()), quote(value));
    onKind(value, *type);
  });
}

JsonShape jsonToolGroupings(std::vector<std::string> const& families,
                            std::function<ToolGroups&(std::string_view family)> const& beginFamily) {
  auto const groups = std::make_shared<ToolGroups*>(nullptr);
  auto const name = jsonString([groups](std::string_view value) { (*groups)->back().first = value; });
  auto const tool =
      jsonString([groups](std::string_view value) { (*groups)->back().second.emplace_back(value); });
  auto const group = jsonObject({{"name", JsonMember::Presence::required, name},
                                 {"tools", JsonMember::Presence::required, jsonArray(tool)}},
                                [groups] { (*groups)->emplace_back(); });
  std::vector<JsonMember> members;
  members.reserve(families.size());
  for (auto const& family : families) {
    members.push_back({family, JsonMember::Presence::optional,
                       jsonArray(group, [groups, family, beginFamily] { *groups = &beginFamily(family); })});
  }
  return jsonObject(std::move(members));
}

}  // namespace Kestrel::ResultTables
