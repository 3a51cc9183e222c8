#include "VantaService_Parameterization/ArchiveListing.h"

#include <exception>
#include <memory>

#include "VantaService_Parameterization/Object.h"
#include "VantaService_PersistenceArchiver/ArchiveObserver.h"
#include "VantaService_PersistenceArchiver/ObjectRecord.h"

namespace Kestrel {

namespace {

/// Keeps what an archive reads.
class Lister final : public ArchiveObserver {
 public:
  explicit Lister(std::vector<ArchiveRecord>& records) : m_records(records) {}

  void onRecord(unsigned int address, std::string_view className, unsigned int version) override {
    auto const depth = static_cast<unsigned int>(m_open.size());
    m_open.push_back(m_records.size());
    m_records.push_back({address, depth, std::string(className), version, {}});
  }
  void onRecordEnd(unsigned int offset, std::string_view unread) override {
    if (!unread.empty()) add(offset, ArchiveField::Bytes{std::string(unread), true});
    m_open.pop_back();
  }
  void onNull(unsigned int offset) override { add(offset, ArchiveField::Null{}); }
  void onReference(unsigned int offset, unsigned int address) override {
    add(offset, ArchiveField::Reference{address});
  }
  void onNumber(unsigned int offset, unsigned int value) override { add(offset, value); }
  void onReal(unsigned int offset, double value) override { add(offset, value); }
  void onText(unsigned int offset, std::string_view value) override { add(offset, std::string(value)); }
  void onBytes(unsigned int offset, std::string_view value) override {
    add(offset, ArchiveField::Bytes{std::string(value), false});
  }

 private:
  template <typename Value>
  void add(unsigned int offset, Value&& value) {
    // Outside of all records there is nothing but the pointer to the root, which may be null.
    if (!m_open.empty()) m_records[m_open.back()].fields.push_back({offset, std::forward<Value>(value)});
  }

  std::vector<ArchiveRecord>& m_records;
  std::vector<std::size_t> m_open;  ///< indices of the records around the read position
};

}  // namespace

ArchiveListing genArchiveListing(std::string_view document) {
  ArchiveListing listing;
  Lister lister(listing.records);
  try {
    PersistenceArchiver const checked(document);
  } catch (std::exception const& error) {
    listing.damage = error.what();
  }
  try {
    PersistenceArchiver archive(document, PersistenceArchiver::Checksum::ignored);
    archive.setObserver(&lister);
    std::shared_ptr<Object> root;
    loadPointer(archive, root);
    archive.checkEndOfRecords();
  } catch (std::exception const& error) {
    if (listing.damage.empty()) listing.damage = error.what();
  }
  return listing;
}

}  // namespace Kestrel
