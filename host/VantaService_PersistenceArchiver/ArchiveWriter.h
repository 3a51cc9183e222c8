#pragma once

#include <bit>
#include <boost/container/static_vector.hpp>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "VantaService_PersistenceArchiver/ArchiveFormat.h"
#include "VantaService_PersistenceArchiver/BaseClassRegister.h"
#include "VantaService_PersistenceArchiver/ByteWriter.h"
#include "VantaService_PersistenceArchiver/StreamposMap.h"
#include "VantaService_PersistenceArchiver/TextTable.h"

namespace Kestrel {

/// Writes a document. `PersistenceArchiver` says what each operation promises.
class ArchiveWriter {
 public:
  /// Writes objects of `classes`, which are referred to.
  explicit ArchiveWriter(ClassMap const& classes);

  ///@{
  /// The operation of `PersistenceArchiver` that this carries out says what it promises.
  [[nodiscard]] unsigned int getPosition() const { return m_bytes.getPosition(); }
  [[nodiscard]] unsigned int getRecordAddress() const { return m_open.empty() ? 0 : m_open.back(); }

  void openRecord(unsigned int address, unsigned int typeHash) {
    assert(address == getPosition() + ArchiveFormat::wordSize);
    if (m_open.size() == ArchiveFormat::greatestDepth)
      throw std::length_error("objects are nested too deeply");
    m_open.push_back(address);
    m_bytes.writeWord(0);  // length
    m_bytes.writeNumber(numberOf(typeHash));
  }
  void closeRecord(unsigned int address, unsigned int endPosition) {
    assert(address == getRecordAddress() && endPosition == getPosition());
    m_open.pop_back();
    m_bytes.replaceWord(address - ArchiveFormat::wordSize, endPosition - address);
  }
  void writeReference(unsigned int address, unsigned int typeHash);
  void writeNull() { m_bytes.writeWord(ArchiveFormat::nullWord); }
  ///@}

  /// The objects of a class that were written.
  [[nodiscard]] StreamposMap& getPositions(unsigned int typeHash) {
    assert(typeHash != BaseClassRegister::noTypeHash);
    return m_positions[numberOf(typeHash) - 1];
  }

  ///@{
  /// The operation of `PersistenceArchiver` that this carries out says what it promises.
  void writeNumber(std::uint32_t value) { m_bytes.writeNumber(value); }
  void writeReal(double value) { m_bytes.writeLongWord(std::bit_cast<std::uint64_t>(value)); }
  void writeText(std::string_view text) { m_bytes.writeNumber(m_texts.add(text)); }

  [[nodiscard]] std::string genDocument();
  ///@}

 private:
  /// In the table of classes, from 1; 0: no class.
  [[nodiscard]] unsigned int numberOf(unsigned int typeHash) {
    if (typeHash == BaseClassRegister::noTypeHash) return 0;
    for (std::size_t i = 0; i < m_writtenClasses.size(); ++i)
      if (m_writtenClasses[i] == typeHash) return static_cast<unsigned int>(i) + 1;
    return addClass(typeHash);
  }
  [[nodiscard]] unsigned int addClass(unsigned int typeHash);
  void writeTables();

  ClassMap const& m_classes;
  boost::container::static_vector<unsigned int, ArchiveFormat::greatestDepth> m_open;  ///< addresses
  ByteWriter m_bytes;
  TextTable m_texts;
  std::vector<unsigned int> m_writtenClasses;  ///< type hashes; few, so that they are searched
  std::deque<StreamposMap> m_positions;        ///< at the index of their class
};

}  // namespace Kestrel
