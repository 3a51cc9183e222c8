#include "Business_TableProperties/FamilySections.h"

#include <utility>

#include "Persistence_DaoAdapter/SolverTableDataKeys.h"

namespace Kestrel::FamilySections {

namespace {

using enum TablePropertyLimitType;
using Keys = SolverTableDataKeys;

// Bolts are clamps to the solver; the tables differ only in what the forces are checked against.
std::vector<SectionDefinition> clampSections(std::vector<TablePropertyLimitType> forceLimits) {
  return {
      {"Forces",
       false,
       true,
       std::move(forceLimits),
       {Keys::getNameOfClampNormalForce(), Keys::getNameOfClampClosingForce(),
        Keys::getNameOfClampSupportingForce(), Keys::getNameOfClampTangentialForce()}},
      {"Distances", false, false, {NoLimit}, {Keys::getNameOfClampNormalDisplacement()}},
      {"Teaching",
       true,
       false,
       {NoLimit, NoLimit, NoLimit},
       {Keys::getNameOfClampTeachingDistanceX(), Keys::getNameOfClampTeachingDistanceY(),
        Keys::getNameOfClampTeachingDistanceZ()}},
  };
}

}  // namespace

std::vector<SectionDefinition> const& clamps() {
  static auto const sections = clampSections({NoLimit, ClampClosingForce, NoLimit, NoLimit});
  return sections;
}

std::vector<SectionDefinition> const& bolts() {
  static auto const sections = clampSections({BoltNormalForce, NoLimit, NoLimit, NoLimit});
  return sections;
}

}  // namespace Kestrel::FamilySections
