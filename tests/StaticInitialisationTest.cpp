#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "Business_TableProperties/SimUnitMaxValuesProvider.h"
#include "VantaService_PersistenceArchiver/Caster.h"
#include "VantaService_PersistenceArchiver/PersistenceArchiver.h"
#include "support/TablePropertySettingsTestAccess.h"
#include "support/TranslatorSpy.h"

// What the library does while it is loaded, seen by the functions that it calls: they are the program's own.

namespace Kestrel {
namespace {

using testing::ElementsAre;

/// What has been called while the libraries were loaded, in order.
std::vector<std::string>& events() {
  static std::vector<std::string> all;
  return all;
}

/// Objects of the library whose destructors have been registered for its unloading, in order. No container:
/// the registration is called before anything else can be.
struct Destructibles {
  std::array<void const*, 64> objects;
  std::array<std::size_t, 64> eventsBefore;
  std::size_t count;
};

Destructibles& destructibles() {
  static constinit Destructibles all{};
  return all;
}

bool s_isLoaded = false;

struct EndOfLoading {
  EndOfLoading() { s_isLoaded = true; }
} const s_endOfLoading;

/// The next definition of a function that the program has put itself before.
template <typename Function>
Function inLibrary(char const* name) {
  return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

bool isInLibrary(void const* address) {
  Dl_info info{};
  return ::dladdr(address, &info) != 0 && info.dli_fname &&
         std::string_view(info.dli_fname).find("libBusiness_TableProperties.") != std::string_view::npos;
}

std::string nameOf(unsigned int identifier) {
  for (auto const* name : {"Object", "TablePropertiesData", "TablePropertyLimit"})
    if (identifier == PersistenceArchiver::getHashForName(name)) return name;
  return std::to_string(identifier);
}

}  // namespace

void onTranslate(TranslatorCall const& call) {
  if (s_isLoaded) return;
  events().push_back("translate(" + call.context + ", \"" + call.text + "\", " +
                     call.comment.value_or("null") + ", " + std::to_string(call.count) + ")");
}

[[gnu::visibility("default")]] BaseClassRegister const* PersistenceArchiver::registerFactory(
    std::string const& name, BaseClassRegister const& record, unsigned int version) {
  static auto const registerInLibrary = inLibrary<decltype(&PersistenceArchiver::registerFactory)>(
      "_ZN7Kestrel19PersistenceArchiver15registerFactoryERKNSt7__cxx1112basic_stringIcSt11char_"
      "traitsIcESaIcEEE"
      "RKNS_17BaseClassRegisterEj");
  if (!s_isLoaded && isInLibrary(reinterpret_cast<void const*>(record.save)))
    events().push_back("registerFactory(\"" + name + "\", " + std::to_string(version) + ")");
  return registerInLibrary(name, record, version);
}

[[gnu::visibility("default")]] bool PersistenceArchiver::registerCaster(unsigned int baseIdentifier,
                                                                        unsigned int derivedIdentifier,
                                                                        Caster* caster) {
  static auto const registerInLibrary = inLibrary<decltype(&PersistenceArchiver::registerCaster)>(
      "_ZN7Kestrel19PersistenceArchiver14registerCasterEjjPNS_6CasterE");
  if (!s_isLoaded)
    events().push_back("registerCaster(" + nameOf(baseIdentifier) + ", " + nameOf(derivedIdentifier) + ")");
  return registerInLibrary(baseIdentifier, derivedIdentifier, caster);
}

}  // namespace Kestrel

extern "C" [[gnu::visibility("default")]] int __cxa_atexit(void (*destroy)(void*), void* object,
                                                           void* library) {
  static auto const registerDestructor =
      reinterpret_cast<int (*)(void (*)(void*), void*, void*)>(::dlsym(RTLD_NEXT, "__cxa_atexit"));
  auto& all = Kestrel::destructibles();
  if (!Kestrel::s_isLoaded && all.count < all.objects.size() && Kestrel::isInLibrary(library)) {
    all.objects[all.count] = object;
    all.eventsBefore[all.count++] = Kestrel::events().size();
  }
  return registerDestructor(destroy, object, library);
}

namespace Kestrel {
namespace {

TEST(StaticInitialisation, TranslatesTheAppendixThenRegistersTheCollectionThenTheLimit) {
  EXPECT_THAT(events(), ElementsAre("translate(SimUnitMaxValuesProvider, \" (Joining Failed)\", null, -1)",
                                    "registerFactory(\"TablePropertiesData\", 500002)",
                                    "registerCaster(Object, TablePropertiesData)",
                                    "registerFactory(\"TablePropertyLimit\", 500002)",
                                    "registerCaster(Object, TablePropertyLimit)"));
  EXPECT_EQ(SimUnitMaxValuesProvider::s_invalidValues_elementNameAppendix, " (Joining Failed)");
}

TEST(StaticInitialisation, HasTheAppendixDestroyedLastAndTheCatalogueFirst) {
  auto const& all = destructibles();
  ASSERT_GE(all.count, 6u) << "the appendix, two registrations, two casters, the catalogue";
  ASSERT_LT(all.count, all.objects.size());
  EXPECT_EQ(all.objects[0], &SimUnitMaxValuesProvider::s_invalidValues_elementNameAppendix);
  EXPECT_EQ(all.eventsBefore[0], 1u) << "the appendix is translated before it is registered";
  EXPECT_EQ(all.objects[all.count - 1], &TablePropertySettingsTestAccess::initMap());
  EXPECT_EQ(all.eventsBefore[all.count - 1], events().size()) << "the catalogue comes after everything else";
}

}  // namespace
}  // namespace Kestrel
