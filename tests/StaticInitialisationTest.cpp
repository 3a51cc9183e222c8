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
#include "support/TablePropertySettingsTestAccess.h"
#include "support/TranslatorSpy.h"

// What the library does while it is loaded, seen by the functions that it calls: they are the program's own.

namespace Kestrel {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::Eq;

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

bool isInLibrary(void const* address) {
  Dl_info info{};
  return ::dladdr(address, &info) != 0 && info.dli_fname &&
         std::string_view(info.dli_fname).find("libBusiness_TableProperties.") != std::string_view::npos;
}

}  // namespace

void onTranslate(TranslatorCall const& call) {
  if (s_isLoaded) return;
  events().push_back("translate(" + call.context + ", \"" + call.text + "\", " +
                     call.comment.value_or("null") + ", " + std::to_string(call.count) + ")");
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

TEST(StaticInitialisation, TranslatesTheAppendixAndNothingElse) {
  EXPECT_THAT(events(), ElementsAre("translate(SimUnitMaxValuesProvider, \" (Joining Failed)\", null, -1)"));
  EXPECT_EQ(SimUnitMaxValuesProvider::s_invalidValues_elementNameAppendix, " (Joining Failed)");
}

TEST(StaticInitialisation, MakesTheAppendixFirstAndTheEmptyCatalogueLast) {
  auto const& all = destructibles();
  ASSERT_GE(all.count, 2u);
  ASSERT_LT(all.count, all.objects.size());
  EXPECT_EQ(all.objects[0], &SimUnitMaxValuesProvider::s_invalidValues_elementNameAppendix);
  EXPECT_EQ(all.eventsBefore[0], 1u) << "the appendix is translated before it is registered";
  EXPECT_EQ(all.objects[all.count - 1], &TablePropertySettingsTestAccess::initMap());
  EXPECT_EQ(all.eventsBefore[all.count - 1], events().size()) << "the catalogue comes after everything else";
}

}  // namespace
}  // namespace Kestrel
