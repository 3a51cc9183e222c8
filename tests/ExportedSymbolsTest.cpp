#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <memory>
#include <regex>
#include <set>
#include <sstream>
#include <string>

namespace {

/// What `command` prints; a failure of the test when it does not run to its end.
std::string outputOf(std::string const& command) {
  std::string output;
  std::FILE* const process = popen(command.c_str(), "r");
  if (process == nullptr) throw std::runtime_error("cannot run " + command);
  std::array<char, 4096> buffer{};
  for (std::size_t n = 0; (n = std::fread(buffer.data(), 1, buffer.size(), process)) > 0;)
    output.append(buffer.data(), n);
  if (pclose(process) != 0) throw std::runtime_error("failed: " + command);
  return output;
}

/// What follows `Kestrel::` in the name of a mangled symbol that lies in that namespace: a class, or a
/// function outside classes. Names that only mention the namespace in their template arguments do not match.
std::regex const kestrelSymbol(
    "_Z(?:Z|T[VTISC]|GV|GR|T[hv]n?\\d+_(?:n?\\d+_)?)*N[rVKRO]*7Kestrel(\\d+)(\\w+)");

TEST(ExportedSymbols, AreThoseOfTheExportedClasses) {
  std::istringstream symbols(
      outputOf(KESTREL_NM " --dynamic --defined-only --format=posix " KESTREL_LIBRARY));
  std::set<std::string> scopes;
  for (std::string line; std::getline(symbols, line);) {
    std::smatch match;
    if (std::regex_search(line, match, kestrelSymbol, std::regex_constants::match_continuous))
      scopes.insert(match.str(2).substr(0, std::stoul(match.str(1))));
  }
  EXPECT_TRUE(scopes.contains("SimUnitMaxValuesProvider"));
  EXPECT_TRUE(scopes.contains("MaxValueGroupContainer"));
  std::set<std::string> const exported{"SimUnitMaxValuesProvider", "MaxValueGroupContainer",
                                       "TablePropertyLimit", "TablePropertiesData", "TablePropertySettings"};
  for (auto const& scope : scopes) EXPECT_TRUE(exported.contains(scope)) << "visible: Kestrel::" << scope;
}

/// Each public operation that can be called from outside, as `nm` shows it.
TEST(ExportedSymbols, HoldAllPublicOperationsOfTheExportedClasses) {
  auto const symbols = outputOf(KESTREL_NM " --dynamic --defined-only --demangle " KESTREL_LIBRARY);
  for (auto const* const operation : {
           "MaxValueGroupContainer::MaxValueGroupContainer(Kestrel::MaxValueGroupContainer::DataType, "
           "Kestrel::SimulationUnitId const&)\n",
           "MaxValueGroupContainer::~MaxValueGroupContainer()\n",
           "SimUnitMaxValuesProvider::SimUnitMaxValuesProvider(Kestrel::SimulationUnit const&, "
           "std::weak_ptr<Kestrel::SimulationResult>)\n",
           "SimUnitMaxValuesProvider::SimUnitMaxValuesProvider(Kestrel::SimUnitMaxValuesProvider const&)\n",
           "SimUnitMaxValuesProvider::~SimUnitMaxValuesProvider()\n",
           "SimUnitMaxValuesProvider::genGetMaxValuesCollection(Kestrel::MaxValueGroupContainer::DataType) "
           "const\n",
           "SimUnitMaxValuesProvider::genGetClampMaxValuesCollection(Kestrel::MaxValueGroupContainer::"
           "DataType, "
           "bool) const\n",
           "SimUnitMaxValuesProvider::genGetToolMaxValuesCollection(",
           "SimUnitMaxValuesProvider::s_invalidValues_elementNameAppendix",
           "TablePropertyLimit::TablePropertyLimit(Kestrel::TablePropertyLimitType, "
           "Kestrel::SimulationUnitId "
           "const&, double, ",
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
           "TablePropertiesData::getLimit(Kestrel::SimulationUnitId const&, Kestrel::TablePropertyLimitType) "
           "const\n",
           "TablePropertiesData::updateLimits(",
           "TablePropertiesData::serialization_register(void*)\n",
           "TablePropertiesData::s_force_serialization_registration\n",
           "TablePropertySettings::TablePropertySettings(Kestrel::TablePropertySettings const&)\n",
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
