#pragma once

#include <filesystem>
#include <locale>
#include <optional>
#include <vector>

namespace Kestrel {

/// The translations of one language: the messages of one compiled gettext catalogue (.mo).
///
/// Reads what msgfmt writes, in either byte order and in any character set that the platform converts to
/// UTF-8. Immutable, so any number of threads may look messages up. Copies share the messages.
class MessageCatalogue {
 public:
  /// The catalogue in `file`; none if it cannot be read or is damaged, which is checked before the first
  /// message is looked up. Costs a pass over the file.
  [[nodiscard]] static std::optional<MessageCatalogue> read(std::filesystem::path const& file);

  /// As `read`, of the bytes of a file.
  [[nodiscard]] static std::optional<MessageCatalogue> parse(std::vector<char> content);

  /// The translation of `text` in `context` (msgctxt; null is none), UTF-8, valid as long as the catalogue or
  /// a copy of it; null where the catalogue has none or an empty one.
  ///
  /// A `count` of 0 or more chooses the plural form by the catalogue's rule; a negative one, and a message
  /// without the form, gives the first form.
  [[nodiscard]] char const* find(char const* context, char const* text, int count) const;

 private:
  explicit MessageCatalogue(std::locale const& messages);

  std::locale m_messages;  ///< only a holder of the messages; no locale of the platform is used
};

}  // namespace Kestrel
