#pragma once

#include <exception>
#include <map>
#include <string>

#include "VantaService_PersistenceArchiver/PersistenceArchiver.h"

namespace Kestrel::StrictHost {

class DamagedDocument : public std::exception {
 public:
  char const* what() const noexcept override { return "damaged document"; }
};

/// What an archive wrote.
struct Document {
  std::string bytes;
  std::map<unsigned int, unsigned int> versions;  ///< of the classes, by identifier
};

/// How the application makes an archive, and what it gets from one.
class Archive {
 public:
  /// One that writes.
  Archive();
  /// One that reads.
  explicit Archive(Document const& document);
  ~Archive();

  operator PersistenceArchiver&() { return m_archiver; }  // NOLINT(google-explicit-constructor)

  /// Has a document say that it was written by a program of another class version.
  void setVersion(std::string const& className, unsigned int version);
  static unsigned int identifierOf(std::string const& className);
  Document genDocument() const;

  bool isReadToTheEnd() const;
  /// Goes on after damage instead of throwing.
  void skipDamage() { m_archiver.m_throwsAtDamage = false; }
  unsigned int getDamageCount() const { return m_archiver.m_damageCount; }

 private:
  PersistenceArchiver m_archiver;
};

}  // namespace Kestrel::StrictHost
