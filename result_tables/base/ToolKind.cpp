#include "result_tables/base/ToolKind.h"

#include <algorithm>
#include <iterator>

namespace Kestrel::ResultTables {

namespace {

struct ToolKind {
  std::string_view name;
  ToolForceDataType type;
};

constexpr ToolKind s_toolKinds[] = {
    {"pilot", ToolForceDataType::pilot},
    {"clamp", ToolForceDataType::clamp},
    {"tool", ToolForceDataType::tool},
    {"spotWeld", ToolForceDataType::spotWeld},
    {"joiningTong", ToolForceDataType::joiningTong},
    {"suctionZone", ToolForceDataType::suctionZone},
    {"bolt", ToolForceDataType::bolt},
};

}  // namespace

std::optional<ToolForceDataType> toolKindOf(std::string_view name) {
  auto const* const found = std::find_if(std::begin(s_toolKinds), std::end(s_toolKinds),
                                         [name](auto const& kind) { return kind.name == name; });
  return found == std::end(s_toolKinds) ? std::nullopt : std::optional(found->type);
}

std::string_view toolKindName(ToolForceDataType kind) {
  auto const* const found = std::find_if(std::begin(s_toolKinds), std::end(s_toolKinds),
                                         [kind](auto const& row) { return row.type == kind; });
  return found == std::end(s_toolKinds) ? std::string_view() : found->name;
}

std::string toolKindNames() {
  std::string names;
  for (auto const& kind : s_toolKinds) names.append(names.empty() ? "" : ", ").append(kind.name);
  return names;
}

}  // namespace Kestrel::ResultTables
