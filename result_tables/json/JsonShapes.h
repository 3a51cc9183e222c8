#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "VantaService_Identifier/GUIdentifier.h"
#include "result_tables/json/JsonReader.h"

namespace Kestrel::ResultTables {

// Shapes that the project's own documents share. They refer to the reader and to their targets, which must
// outlive them.

/// A string that is stored as it is.
JsonShape jsonText(std::string& target);

/// A UUID; anything else is refused.
JsonShape jsonIdentifier(JsonReader const& reader, std::function<void(GUIdentifier const&)> onIdentifier);
JsonShape jsonIdentifier(JsonReader const& reader, GUIdentifier& target);

/// The name of a document's format, which must be `name`.
JsonShape jsonFormatName(JsonReader const& reader, std::string_view name);

/// The version of a document's format, which must be 1.
JsonShape jsonFormatVersion(JsonReader const& reader);

}  // namespace Kestrel::ResultTables
