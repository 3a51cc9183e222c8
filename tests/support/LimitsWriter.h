#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Business_EvaluationInterface/SimulationUnitId.h"
#include "Business_TableProperties/TablePropertiesData.h"
#include "Business_TableProperties/TablePropertyLimit.h"
#include "VantaService_PersistenceArchiver/Document.h"

namespace Kestrel {

/// A limit as a test wants it to stand in a document.
struct WrittenLimit {
  unsigned int type = 1;
  SimulationUnitId unit;
  double limit = 0.0;
  std::string unitString;
};

/// Writes limits documents of programs that are not this one: older and newer class versions, other data
/// versions, more fields than this program knows.
struct LimitsWriter {
  unsigned int collectionVersion = 500002;
  unsigned int limitVersion = 500002;
  unsigned int dataVersion = 25;
  std::vector<WrittenLimit> limits = {};
  bool hasUnknownFields = false;  ///< at the end of every record that may have them

  [[nodiscard]] std::string genDocument() const {
    PersistenceArchiver archive;
    unsigned int const collection = typeHashOf<TablePropertiesData>(archive, collectionVersion);
    unsigned int const limit = typeHashOf<TablePropertyLimit>(archive, limitVersion);
    saveRecord(archive, collection, [&] {
      unsigned int const parent = writeObjectPart(archive, {}, 0);
      archive << dataVersion;
      saveRecord(archive, PersistenceArchiver::noTypeHash, [&] {
        archive << static_cast<unsigned int>(limits.size());
        for (unsigned int i = 0; i < limits.size(); ++i)
          saveRecord(archive, limit, [&] { writeLimit(archive, limits[i], parent, i); });
        writeUnknownFields(archive);
      });
      writeUnknownFields(archive);
    });
    return archive.genDocument();
  }

 private:
  template <typename T>
  static unsigned int typeHashOf(PersistenceArchiver& archive, unsigned int version) {
    BaseClassRegister record;
    T::serialization_register(&record);
    archive.getMapOfClasses().at(record.identifier).currentVersion = version;
    return record.identifier;
  }

  /// Returns the address by which children name their parent.
  unsigned int writeObjectPart(PersistenceArchiver& archive, unsigned int parent,
                               unsigned int position) const {
    unsigned int const address = archive.tellp() + 4;
    BaseClassRegister record;
    Object::serialization_register(&record);
    saveRecord(archive, record.identifier, [&] {
      if (parent != 0) {
        archive << std::string("TablePropertyLimit") << parent << position << 0U;
      } else {
        archive << std::string() << 0U << 0xFFFFFFFFU << static_cast<unsigned int>(limits.size());
        for (unsigned int i = 0; i < limits.size(); ++i) archive << i;
      }
      writeUnknownFields(archive);
    });
    return address;
  }

  void writeLimit(PersistenceArchiver& archive, WrittenLimit const& limit, unsigned int parent,
                  unsigned int position) const {
    writeObjectPart(archive, parent, position);
    archive << limit.type;
    savePart(archive, limit.unit);
    archive << limit.limit;
    constexpr unsigned int firstVersionWithUnitString = 500002;
    if (limitVersion >= firstVersionWithUnitString) archive << limit.unitString;
    writeUnknownFields(archive);
  }

  void writeUnknownFields(PersistenceArchiver& archive) const {
    if (hasUnknownFields) archive << 4711U << 0.5 << std::string("of a newer program");
  }
};

}  // namespace Kestrel
