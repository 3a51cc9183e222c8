#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "VantaService_Parameterization/Object.h"
#include "VantaService_PersistenceArchiver/ClassRegistration.h"
#include "VantaService_PersistenceArchiver/Document.h"

// The worked example of a class that documents hold (docs/developing.md).

namespace Kestrel {
namespace {

constexpr unsigned int s_firstVersionWithAuthor = 2;

class Remark : public Object {
 public:
  Remark() = default;
  Remark(std::string text, std::string author) : m_text(std::move(text)), m_author(std::move(author)) {}

  static void serialization_register(void* record) {
    fillRegistration<Remark>(record, "Remark", s_firstVersionWithAuthor);
  }

  [[nodiscard]] std::string const& text() const { return m_text; }
  [[nodiscard]] std::string const& author() const { return m_author; }

 private:
  friend class Kestrel::ArchiveAccess;

  void save(PersistenceArchiver& archive, unsigned int version) const {
    savePart<Object>(archive, *this);
    archive << m_text;
    if (version >= s_firstVersionWithAuthor) archive << m_author;
  }
  void load(PersistenceArchiver& archive, unsigned int version) {
    loadPart<Object>(archive, *this);
    archive >> m_text;
    if (version >= s_firstVersionWithAuthor) archive >> m_author;
  }

  std::string m_text;
  std::string m_author;
};

bool const s_isRegistered = registerClass<Remark>() && registerParent<Object, Remark>();

/// As a program of an older version writes it.
std::string genDocumentOfVersion(unsigned int version, std::shared_ptr<Remark> const& remark) {
  PersistenceArchiver archive;
  archive.getMapOfClasses().at(registrationOf<Remark>().identifier).currentVersion = version;
  savePointer(archive, remark);
  return archive.genDocument();
}

TEST(ArchiveExample, IsReadAsItWasWritten) {
  ASSERT_TRUE(s_isRegistered);
  auto const remark = loadDocument<Remark>(genDocument(std::make_shared<Remark>("too high", "M. Muster")));
  EXPECT_EQ(remark->text(), "too high");
  EXPECT_EQ(remark->author(), "M. Muster");
}

TEST(ArchiveExample, IsReadFromOlderDocuments) {
  auto const document = genDocumentOfVersion(1, std::make_shared<Remark>("too high", "M. Muster"));
  EXPECT_EQ(loadDocument<Remark>(document)->text(), "too high");
  EXPECT_EQ(loadDocument<Remark>(document)->author(), "");
}

TEST(ArchiveExample, IsKnownByItsBaseClass) {
  auto const document = genDocument(std::shared_ptr<Object>(std::make_shared<Remark>("too high", "")));
  EXPECT_EQ(std::dynamic_pointer_cast<Remark>(loadDocument<Object>(document))->text(), "too high");
}

}  // namespace
}  // namespace Kestrel
