// A host application in small: the tables of its units, limits that tell when they change, a document that is
// kept.

#include <cmath>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Business_SimulationResult/SimulationUnit.h"
#include "Business_TableProperties/SimUnitMaxValuesProvider.h"
#include "Business_TableProperties/TablePropertiesData.h"
#include "Business_TableProperties/TablePropertySettings.h"
#include "VantaService_PersistenceArchiver/Document.h"

using namespace Kestrel;

namespace {

// What the solver has stored: a unit with one bolt, its normal force over three steps with their times.
std::unique_ptr<SimulationUnit> genUnit(std::string const& id, std::string const& name, double force) {
  auto unit = std::make_unique<SimulationUnit>(SimulationUnitId(GUIdentifier::fromString(id).value()), name);
  unit->addTool("Bolt 1", ToolForceDataType::bolt);
  std::vector<std::pair<double, double>> const pairs{{0.0, 0.0}, {force, 0.5}, {0.25 * force, 1.0}};
  unit->addToolForce("Bolt 1", "ClampNormalForce", std::make_shared<StepValues<double>>(pairs));
  return unit;
}

// One table, with the limits of the unit.
void printTable(SimulationUnit const& unit, TablePropertiesData const& limits) {
  auto const result = std::make_shared<SimulationResult>(std::vector<std::shared_ptr<SimulationStep>>());
  SimUnitMaxValuesProvider const provider(unit, result);
  auto const table = provider.genGetMaxValuesCollection(MaxValueGroupContainer::DataType::Bolts);
  auto const& group = table->groups.front();
  auto const limit = limits.getLimit(unit.getID(), group.limitTypes.front());
  for (auto const& item : group.subGroups.front().items) {
    double const value = item.maxValues.front();
    std::printf("%s: %s, %s %g %s, limit %g%s\n", unit.getSimulationUnitName().c_str(), item.name.c_str(),
                TablePropertySettings::getDisplayName(group.valueNames.front()).c_str(), value,
                limit->getUnitString().c_str(), limit->getLimit(),
                std::abs(value) > limit->getLimit() ? ": exceeded" : "");
  }
}

void save(std::shared_ptr<TablePropertiesData> const& limits, std::string const& file) {
  std::ofstream(file, std::ios::binary) << genDocument(limits);
}

std::shared_ptr<TablePropertiesData> load(std::string const& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string const document{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  return loadDocument<TablePropertiesData>(document);
}

}  // namespace

int main(int argc, char* argv[]) try {
  std::string const file = argc > 1 ? argv[1] : "host.limits";
  auto const op10 = genUnit("5d1c1f0e-3f0a-4c1e-9c50-6a8f0b6f3a10", "OP10", -42.5);
  auto const op20 = genUnit("5d1c1f0e-3f0a-4c1e-9c50-6a8f0b6f3a20", "OP20", 28.0);

  // New units get the defaults.
  auto const limits = std::make_shared<TablePropertiesData>();
  limits->updateLimits({op10->getID(), op20->getID()});
  printTable(*op10, *limits);
  printTable(*op20, *limits);

  // A view that shows a limit is told when somebody sets it.
  auto const limit = limits->getLimit(op10->getID(), TablePropertyLimitType::BoltNormalForce);
  auto const connection =
      limit->connectToSigLimitsChanged([&] { std::printf("told: the limit is %g\n", limit->getLimit()); });
  limit->setLimit(50.0);
  connection.disconnect();
  limit->setLimit(45.0);
  printTable(*op10, *limits);

  // What the user has set is kept with the document, and found again by the unit's identifier.
  save(limits, file);
  auto const read = load(file);
  read->updateLimits({op20->getID(), op10->getID()});
  printTable(*op10, *read);
} catch (std::exception const& error) {
  // A document that is damaged, for example; the message says where.
  std::cerr << error.what() << '\n';
  return 2;
}
