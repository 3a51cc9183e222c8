#include "VantaService_PersistenceArchiver/ClassRegistration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "VantaService_PersistenceArchiver/ObjectRecord.h"

namespace Kestrel {
namespace {

/// A class under a name that the registry gives to one class only.
template <int number>
class Namesake {
 public:
  static void serialization_register(void* record) {
    fillRegistration<Namesake>(record, "ClassRegistrationTest.Namesake", 1);
  }

 private:
  friend class Kestrel::ArchiveAccess;

  void save(PersistenceArchiver& archive, unsigned int /*version*/) const { archive << 7U; }
  void load(PersistenceArchiver& archive, unsigned int /*version*/) {
    unsigned int value = 0;
    archive >> value;
  }
};

using First = Namesake<1>;
using Refused = Namesake<2>;

class RefusedRegistration : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    ASSERT_TRUE(registerClass<First>());
    ASSERT_FALSE(registerClass<Refused>());
  }

  static std::string genDocumentOfTheFirst() {
    PersistenceArchiver archive;
    savePointer(archive, std::make_shared<First>());
    return archive.genDocument();
  }

  template <typename Use>
  static std::string errorOf(Use const& use) {
    try {
      use();
    } catch (std::runtime_error const& error) {
      return error.what();
    }
    return "none";
  }

  static constexpr char const* s_error = "ClassRegistrationTest.Namesake is not registered with the archive";
};

TEST_F(RefusedRegistration, IsAnErrorWhenAnObjectOfTheClassIsWritten) {
  PersistenceArchiver archive;
  EXPECT_EQ(errorOf([&] { savePointer(archive, std::make_shared<Refused>()); }), s_error);
  EXPECT_EQ(errorOf([&] { savePart(archive, Refused()); }), s_error);
}

TEST_F(RefusedRegistration, IsNoErrorWhenThereIsNoObjectToWrite) {
  PersistenceArchiver archive;
  savePointer(archive, std::shared_ptr<Refused>());
  EXPECT_EQ(archive.tellp(), 24U);
}

TEST_F(RefusedRegistration, IsAnErrorWhenAnObjectOfTheClassIsRead) {
  auto const document = genDocumentOfTheFirst();
  PersistenceArchiver archiveOfPointer{std::string_view(document)};
  std::shared_ptr<Refused> pointer;
  EXPECT_EQ(errorOf([&] { loadPointer(archiveOfPointer, pointer); }), s_error);
  EXPECT_EQ(pointer, nullptr);
  PersistenceArchiver archiveOfPart{std::string_view(document)};
  Refused part;
  EXPECT_EQ(errorOf([&] { loadPart(archiveOfPart, part); }), s_error);
}

TEST_F(RefusedRegistration, LeavesTheClassThatHasTheNameAsItIs) {
  auto const document = genDocumentOfTheFirst();
  PersistenceArchiver archive{std::string_view(document)};
  std::shared_ptr<First> pointer;
  loadPointer(archive, pointer);
  EXPECT_NE(pointer, nullptr);
}

}  // namespace
}  // namespace Kestrel
