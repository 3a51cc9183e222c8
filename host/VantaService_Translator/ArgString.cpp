#include "VantaService_Translator/ArgString.h"

#include <boost/algorithm/string/replace.hpp>
#include <utility>

namespace Kestrel {

ArgString::ArgString(std::string text) : m_text(std::move(text)) {}

ArgString ArgString::arg(std::string const& argument) const {
  return ArgString(boost::algorithm::replace_all_copy(m_text, "%1", argument));
}

ArgString::operator std::string() const { return m_text; }

}  // namespace Kestrel
