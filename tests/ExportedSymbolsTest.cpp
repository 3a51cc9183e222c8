#include <gmock/gmock.h>

#include <memory>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "support/ChildProcess.h"

namespace Kestrel {
namespace {

/// What follows `Kestrel::` in the name of a mangled symbol that lies in that namespace: a class, or a
/// function outside classes. Names that only mention the namespace in their template arguments do not match.
std::regex const kestrelSymbol(
    "_Z(?:Z|T[VTISC]|GV|GR|T[hv]n?\\d+_(?:n?\\d+_)?)*N[rVKRO]*7Kestrel(\\d+)(\\w+)");

TEST(ExportedSymbols, AreThoseOfTheExportedClasses) {
  std::istringstream symbols(
      outputOfCommand(KESTREL_NM " --dynamic --defined-only --format=posix " KESTREL_LIBRARY));
  std::set<std::string> scopes;
  for (std::string line; std::getline(symbols, line);) {
    std::smatch match;
    if (std::regex_search(line, match, kestrelSymbol, std::regex_constants::match_continuous))
      scopes.insert(match.str(2).substr(0, std::stoul(match.str(1))));
  }
  EXPECT_TRUE(scopes.contains("SimUnitMaxValuesProvider"));
  EXPECT_TRUE(scopes.contains("MaxValueGroupContainer"));
  std::set<std::string> const exported{"SimUnitMaxValuesProvider", "SimUnitMaxValueOrigins",
                                       "MaxValueGroupContainer",   "TablePropertyLimit",
                                       "TablePropertiesData",      "TablePropertySettings"};
  for (auto const& scope : scopes) EXPECT_TRUE(exported.contains(scope)) << "visible: Kestrel::" << scope;
}

/// A symbol of another library, or of a template of one, would take the place of another version of it in the
/// same process.
TEST(ExportedSymbols, LieInTheNamespaceOfTheLibraries) {
  std::regex const ownSymbol("_Z(?:GV)?Z?(?:T[VTISh][^_]*_?|Tv[^N]*)?N[KRO]*7Kestrel.*");
  for (auto const* const library : {KESTREL_LIBRARY, KESTREL_HOST_LIBRARY}) {
    std::istringstream symbols(outputOfCommand(
        std::string(KESTREL_NM " --dynamic --defined-only --format=posix --no-demangle ") + library));
    std::size_t count = 0;
    for (std::string name; symbols >> name; symbols.ignore(1000, '\n'), ++count) {
      EXPECT_TRUE(std::regex_match(name, ownSymbol)) << name << " is visible in " << library;
    }
    EXPECT_GT(count, 50U) << library;
  }
}

/// Each public operation that can be called from outside, as `nm` shows it.
TEST(ExportedSymbols, HoldAllPublicOperationsOfTheExportedClasses) {
  auto const symbols = outputOfCommand(KESTREL_NM " --dynamic --defined-only --demangle " KESTREL_LIBRARY);
  for (auto const* const operation : {
           "MaxValueGroupContainer::MaxValueGroupContainer(",
           "MaxValueGroupContainer::~MaxValueGroupContainer()\n",
           "SimUnitMaxValuesProvider::SimUnitMaxValuesProvider(Kestrel::SimulationUnit const&",
           "SimUnitMaxValuesProvider::SimUnitMaxValuesProvider(Kestrel::SimUnitMaxValuesProvider const&)\n",
           "SimUnitMaxValuesProvider::~SimUnitMaxValuesProvider()\n",
           "SimUnitMaxValuesProvider::genGetMaxValuesCollection(",
           "SimUnitMaxValuesProvider::genGetClampMaxValuesCollection(",
           "SimUnitMaxValuesProvider::genGetToolMaxValuesCollection(",
           "SimUnitMaxValuesProvider::s_invalidValues_elementNameAppendix",
           "SimUnitMaxValueOrigins::SimUnitMaxValueOrigins(Kestrel::SimulationUnit const&",
           "SimUnitMaxValueOrigins::~SimUnitMaxValueOrigins()\n",
           "SimUnitMaxValueOrigins::getOrigin(",
           "SimUnitMaxValueOrigins::genGetSeries(",
           "TablePropertyLimit::TablePropertyLimit(",
           "TablePropertyLimit::~TablePropertyLimit()\n",
           "TablePropertyLimit::getLimit() const\n",
           "TablePropertyLimit::setLimit(double)\n",
           "TablePropertyLimit::getLimitDisplayName",
           "TablePropertyLimit::getUnitString",
           "TablePropertyLimit::connectToSigLimitsChanged(",
           "TablePropertyLimit::getMaxLimit() const\n",
           "TablePropertyLimit::setMaxLimit(double)\n",
           "TablePropertyLimit::getMaxLimitDisplayName",
           "TablePropertyLimit::setMaxDisplayName(",
           "TablePropertyLimit::getSimUnitID() const\n",
           "TablePropertyLimit::getType() const\n",
           "TablePropertyLimit::serialization_register(void*)\n",
           "TablePropertyLimit::s_force_serialization_registration\n",
           "TablePropertiesData::TablePropertiesData()\n",
           "TablePropertiesData::~TablePropertiesData()\n",
           "TablePropertiesData::getLimit(",
           "TablePropertiesData::updateLimits(",
           "TablePropertiesData::serialization_register(void*)\n",
           "TablePropertiesData::s_force_serialization_registration\n",
           "TablePropertySettings::TablePropertySettings(",
           "TablePropertySettings::operator=(Kestrel::TablePropertySettings const&)\n",
           "TablePropertySettings::getDisplayName",
           "TablePropertySettings::getShortDisplayName",
           "TablePropertySettings::getTableDisplayName",
           "TablePropertySettings::getShortTableDisplayName",
           "TablePropertySettings::getUnitString",
       })
    EXPECT_THAT(symbols, testing::HasSubstr(std::string("Kestrel::") + operation));
}

}  // namespace
}  // namespace Kestrel
