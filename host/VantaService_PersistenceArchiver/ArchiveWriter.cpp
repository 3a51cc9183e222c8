#include "VantaService_PersistenceArchiver/ArchiveWriter.h"

#include <algorithm>

#include "VantaService_ExceptionHandling/KeException.h"

namespace Kestrel {

ArchiveWriter::ArchiveWriter(ClassMap const& classes) : m_classes(classes) {
  m_bytes.writeBytes(ArchiveFormat::magic);
  m_bytes.writeWord(ArchiveFormat::version);
  m_bytes.writeWord(0);  // length
  m_bytes.writeWord(0);  // position of the tables
}

void ArchiveWriter::writeReference(unsigned int address, unsigned int typeHash) {
  if (std::find(m_open.begin(), m_open.end(), address) != m_open.end())
    throw KeException("an object points to itself or to one that it is part of");
  m_bytes.writeWord(ArchiveFormat::referenceBit | address);
  m_bytes.writeNumber(numberOf(typeHash));
}

std::string ArchiveWriter::genDocument() {
  assert(m_open.empty());
  m_bytes.replaceWord(ArchiveFormat::tablesPosition, getPosition());
  writeTables();
  m_bytes.replaceWord(ArchiveFormat::lengthPosition, getPosition() + ArchiveFormat::checksumSize);
  m_bytes.writeLongWord(ArchiveFormat::checksumOf(m_bytes.getBytes()));
  return m_bytes.takeBytes();
}

unsigned int ArchiveWriter::addClass(unsigned int typeHash) {
  if (!m_classes.contains(typeHash)) throw KeException("a class is not registered with the archive");
  m_positions.emplace_back();
  m_writtenClasses.push_back(typeHash);
  return static_cast<unsigned int>(m_writtenClasses.size());
}

void ArchiveWriter::writeTables() {
  ByteWriter classes;
  classes.writeNumber(static_cast<std::uint32_t>(m_writtenClasses.size()));
  for (std::size_t i = 0; i < m_writtenClasses.size(); ++i) {
    auto const& record = m_classes.at(m_writtenClasses[i]);
    classes.writeNumber(m_texts.add(record.name));
    classes.writeNumber(record.currentVersion);
    classes.writeNumber(static_cast<std::uint32_t>(m_positions[i].size()));
  }
  m_bytes.writeNumber(static_cast<std::uint32_t>(m_texts.size()));
  m_bytes.writeBytes(m_texts.getBytes());
  m_bytes.writeBytes(classes.getBytes());
}

}  // namespace Kestrel
