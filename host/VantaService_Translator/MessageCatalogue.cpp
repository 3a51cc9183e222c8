#include "VantaService_Translator/MessageCatalogue.h"

#include <algorithm>
#include <boost/endian/conversion.hpp>
#include <boost/locale/gnu_gettext.hpp>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

namespace Kestrel {

namespace {

namespace gettext = boost::locale::gnu_gettext;
using Messages = boost::locale::message_format<char>;

/// What the library that reads the messages takes for granted in a file and does not check itself: that the
/// tables and the texts are inside of it.
class FileCheck {
 public:
  static constexpr std::size_t largestFile = 0xFFFFFFFF;  ///< offsets have 32 bits

  explicit FileCheck(std::vector<char>& content) : m_content(content) {}

  bool isSound() {
    if (m_content.size() < headerSize || m_content.size() > largestFile) return false;
    m_isSwapped = word(0) != magic;
    if (word(0) != magic || word(4) >> 16U > 1) return false;
    auto const count = word(8);
    if (count == 0 || !isTable(word(12), count) || !isTable(word(16), count)) return false;
    for (std::uint32_t i = 0; i < count; ++i) {
      if (!isText(word(12) + 8 * i) || !isText(word(16) + 8 * i)) return false;
    }
    return isHeader(textAt(word(12)), textAt(word(16)));
  }

  /// The hash table is an option of the format. Without it the library indexes the messages on its own and
  /// need not trust the table.
  void dropHashTable() { std::fill_n(m_content.begin() + hashSizeOffset, 4, '\0'); }

 private:
  static constexpr std::uint32_t magic = 0x950412de;
  static constexpr std::size_t headerSize = 28;
  static constexpr std::ptrdiff_t hashSizeOffset = 20;
  static constexpr std::size_t longestPluralRule = 1000;  ///< it is parsed by recursion

  [[nodiscard]] std::uint32_t word(std::size_t offset) const {
    std::uint32_t value = 0;
    std::memcpy(&value, m_content.data() + offset, sizeof value);
    return m_isSwapped ? boost::endian::endian_reverse(value) : value;
  }

  [[nodiscard]] bool isTable(std::size_t offset, std::size_t count) const {
    return offset <= m_content.size() && count <= (m_content.size() - offset) / 8;
  }

  [[nodiscard]] bool isText(std::size_t entry) const {
    std::size_t const end = std::size_t{word(entry)} + word(entry + 4);
    return end < m_content.size() && m_content[end] == '\0';
  }

  [[nodiscard]] std::string_view textAt(std::size_t entry) const {
    return {m_content.data() + word(entry + 4), word(entry)};
  }

  [[nodiscard]] static bool isHeader(std::string_view key, std::string_view header) {
    constexpr std::string_view plural = "plural=";
    auto const rule = header.substr(std::min(header.find(plural), header.size()));
    return key.empty() && rule.substr(0, rule.find(';')).size() <= plural.size() + longestPluralRule;
  }

  std::vector<char>& m_content;
  bool m_isSwapped = false;
};

gettext::messages_info messagesIn(std::vector<char> const& content) {
  gettext::messages_info info;
  info.encoding = "UTF-8";
  info.domains.emplace_back("messages");
  info.paths.emplace_back();
  info.callback = [&content](std::string const&, std::string const&) { return content; };
  return info;
}

}  // namespace

std::optional<MessageCatalogue> MessageCatalogue::read(std::filesystem::path const& file) {
  std::error_code error;
  auto const size = std::filesystem::file_size(file, error);
  if (error || size > FileCheck::largestFile) return std::nullopt;  // missing, or no regular file
  std::vector<char> content(size);
  std::ifstream stream(file, std::ios::binary);
  if (!stream.read(content.data(), static_cast<std::streamsize>(size))) return std::nullopt;
  return parse(std::move(content));
}

std::optional<MessageCatalogue> MessageCatalogue::parse(std::vector<char> content) {
  FileCheck check(content);
  if (!check.isSound()) return std::nullopt;
  check.dropHashTable();
  try {
    return MessageCatalogue(
        std::locale(std::locale::classic(), gettext::create_messages_facet<char>(messagesIn(content))));
  } catch (std::runtime_error const&) {  // no character set, or bytes that are not of it
    return std::nullopt;
  }
}

MessageCatalogue::MessageCatalogue(std::locale const& messages) : m_messages(messages) {}

char const* MessageCatalogue::find(char const* context, char const* text, int count) const {
  auto const& messages = std::use_facet<Messages>(m_messages);
  char const* translation = count < 0 ? nullptr : messages.get(0, context, text, count);
  if (!translation) translation = messages.get(0, context, text);
  return translation && *translation != '\0' ? translation : nullptr;
}

}  // namespace Kestrel
