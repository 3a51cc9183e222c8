#include "result_tables/json/JsonShapes.h"

#include <fmt/format.h>

#include <cstdint>
#include <limits>
#include <utility>

#include "result_tables/base/Text.h"

namespace Kestrel::ResultTables {

JsonShape jsonText(std::string& target) {
  return jsonString([&target](std::string_view value) { target = value; });
}

JsonShape jsonIdentifier(JsonReader const& reader, std::function<void(GUIdentifier const&)> onIdentifier) {
  return jsonString([&reader, onIdentifier = std::move(onIdentifier)](std::string_view value) {
    auto const id = GUIdentifier::fromString(value);
    if (!id) reader.fail("a UUID of 8-4-4-4-12 hexadecimal digits", quote(value));
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
    if (value != 1) reader.fail("version 1", fmt::format("version {}", value));
  });
}

}  // namespace Kestrel::ResultTables
