#include "result_tables/render/RenderArchive.h"

#include <fmt/format.h>
#include <boost/algorithm/hex.hpp>

#include <iterator>

#include "result_tables/base/Text.h"

namespace Kestrel::ResultTables {

namespace {

/// The form of each kind of value.
struct Form {
  std::string operator()(ArchiveField::Null const& /*value*/) const { return "null"; }
  std::string operator()(ArchiveField::Reference const& value) const {
    return fmt::format("->{}", value.address);
  }
  std::string operator()(unsigned int value) const { return std::to_string(value); }
  std::string operator()(double value) const {
    auto const form = shortestForm(value);
    bool const looksLikeAnInteger = form.find_first_not_of("-0123456789") == form.npos;
    return looksLikeAnInteger ? form + ".0" : form;
  }
  std::string operator()(std::string const& value) const {
    std::string quoted = "\"";
    for (char const c : toPrintable(value)) {
      if (c == '"' || c == '\\') quoted += '\\';
      quoted += c;
    }
    return quoted + '"';
  }
  std::string operator()(ArchiveField::Bytes const& value) const {
    std::string form = value.isUnread ? "unread:" : "bytes:";
    boost::algorithm::hex_lower(value.bytes, std::back_inserter(form));
    return form;
  }
};

}  // namespace

std::string renderArchive(ArchiveListing const& listing) {
  std::string out;
  for (auto const& record : listing.records) {
    out += fmt::format("{:>8}  {:{}}", record.offset, "", 2 * record.depth);
    out +=
        record.className.empty() ? "-" : fmt::format("{} {}", toPrintable(record.className), record.version);
    for (auto const& field : record.fields)
      out += fmt::format("  @{} {}", field.offset, std::visit(Form(), field.value));
    out += '\n';
  }
  return out;
}

}  // namespace Kestrel::ResultTables
