#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "VantaService_Parameterization/Object.h"
#include "VantaService_PersistenceArchiver/ArchiveException.h"
#include "VantaService_PersistenceArchiver/Document.h"

// Libraries with persistent classes that come and go. This program is linked with none of them.

namespace Kestrel {
namespace {

using testing::HasSubstr;

class Library {
 public:
  explicit Library(std::string path) : m_path(std::move(path)), m_handle(::dlopen(m_path.c_str(), RTLD_NOW)) {
    if (m_handle == nullptr) throw std::runtime_error(::dlerror());
  }
  Library(Library const&) = delete;
  Library& operator=(Library const&) = delete;
  ~Library() { unload(); }

  /// Whether the code is gone from the process afterwards.
  bool unload() {
    if (m_handle != nullptr) ::dlclose(std::exchange(m_handle, nullptr));
    void* const again = ::dlopen(m_path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (again != nullptr) ::dlclose(again);
    return again == nullptr;
  }

 private:
  std::string m_path;
  void* m_handle;
};

BaseClassRegister const* find(ClassMap& classes, char const* name) {
  auto const entry = classes.find(PersistenceArchiver::getHashForName(name));
  return entry != classes.end() ? &entry->second : nullptr;
}

bool isRegistered(char const* name) { return find(PersistenceArchiver().getMapOfClasses(), name) != nullptr; }

Caster const* findCaster(char const* derived) {
  return PersistenceArchiver::getCaster(PersistenceArchiver::getHashForName("Object"),
                                        PersistenceArchiver::getHashForName(derived));
}

/// A document with a new object of the class.
std::string genDocumentWith(char const* name) {
  PersistenceArchiver archive;
  auto const* const record = find(archive.getMapOfClasses(), name);
  auto const object = record->factory();
  saveRecord(archive, record->identifier,
             [&] { record->save(archive, object.get(), record->currentVersion); });
  return archive.genDocument();
}

TEST(LibraryUnloading, WithdrawsClassesAndTheirCasters) {
  Library plugin(KESTREL_TEST_PLUGIN);
  ASSERT_TRUE(isRegistered("PluginNode"));
  EXPECT_NE(findCaster("PluginNode"), nullptr);
  ASSERT_TRUE(plugin.unload());
  EXPECT_FALSE(isRegistered("PluginNode"));
  EXPECT_EQ(findCaster("PluginNode"), nullptr);
}

TEST(LibraryUnloading, LeavesDocumentsThatAreReadAgainWhenTheLibraryIsBack) {
  std::string document;
  {
    Library const plugin(KESTREL_TEST_PLUGIN);
    document = genDocumentWith("PluginNode");
  }
  try {
    static_cast<void>(loadDocument<Object>(document));
    FAIL() << "read an object of a class that is gone";
  } catch (ArchiveException const& error) {
    EXPECT_THAT(error.what(), HasSubstr("not registered in this program"));
  }
  Library const plugin(KESTREL_TEST_PLUGIN);
  EXPECT_NE(loadDocument<Object>(document), nullptr);
}

TEST(LibraryUnloading, TakesTheLimitsLibraryOutAndIn) {
  for (int round = 0; round < 2; ++round) {
    Library limits(KESTREL_LIBRARY);
    ASSERT_TRUE(isRegistered("TablePropertiesData"));
    ASSERT_TRUE(isRegistered("TablePropertyLimit"));
    EXPECT_NE(loadDocument<Object>(genDocumentWith("TablePropertiesData")), nullptr);
    ASSERT_TRUE(limits.unload());
    EXPECT_FALSE(isRegistered("TablePropertiesData"));
    EXPECT_FALSE(isRegistered("TablePropertyLimit"));
    EXPECT_EQ(findCaster("TablePropertyLimit"), nullptr);
  }
}

TEST(LibraryUnloading, DoesNotMindTheOrder) {
  for (bool const isPluginFirst : {true, false}) {
    Library first(isPluginFirst ? KESTREL_TEST_PLUGIN : KESTREL_LIBRARY);
    Library second(isPluginFirst ? KESTREL_LIBRARY : KESTREL_TEST_PLUGIN);
    auto const ofPlugin = genDocumentWith("PluginNode");
    auto const ofLimits = genDocumentWith("TablePropertiesData");
    first.unload();
    EXPECT_NE(loadDocument<Object>(isPluginFirst ? ofLimits : ofPlugin), nullptr);
    EXPECT_THROW(static_cast<void>(loadDocument<Object>(isPluginFirst ? ofPlugin : ofLimits)),
                 ArchiveException);
  }
}

}  // namespace
}  // namespace Kestrel
