#include "result_tables/study/Selection.h"

#include <gmock/gmock.h>

#include "result_tables/base/Error.h"
#include "support/StudyTesting.h"

namespace Kestrel::ResultTables {
namespace {

using Family = MaxValueGroupContainer::DataType;
using testing::ThrowsMessage;

bool isSelected(TableSelection const& selection, std::size_t section = 0) {
  return StudySelection(selection).has(genTestRun("r").sections[section]);
}

TEST(StudySelection, IsByUnitFamilyAndTeaching) {
  EXPECT_TRUE(isSelected({}));
  EXPECT_TRUE(isSelected({{"OP20"}, {}, false}));
  EXPECT_TRUE(isSelected({{"OP10", "0B6F6D3E-6C1E-4A57-9B52-0F6F2F1B6A01"}, {}, false}));
  EXPECT_FALSE(isSelected({{"op20"}, {}, false})) << "names are as they are";
  EXPECT_TRUE(isSelected({{}, {Family::Bolts, Family::Clamps}, false}));
  EXPECT_FALSE(isSelected({{}, {Family::Bolts}, false}));
  EXPECT_FALSE(isSelected({}, 1));
  EXPECT_TRUE(isSelected({{}, {}, true}, 1));
}

TEST(StudySelection, RefusesUnitsThatNoRunHas) {
  StudySelection selection({{"OP20", "OP30"}, {}, false});
  static_cast<void>(selection.has(genTestRun("r").sections[0]));
  EXPECT_THAT(
      [&] { selection.checkUnits("s.db"); },
      ThrowsMessage<Error>("s.db: expected the id or the name of a unit of the study (\"OP20\"), found "
                           "\"OP30\"; did you mean \"OP20\"?"));
  StudySelection met({{"OP20"}, {}, false});
  static_cast<void>(met.has(genTestRun("r").sections[0]));
  EXPECT_NO_THROW(met.checkUnits("s.db"));
}

}  // namespace
}  // namespace Kestrel::ResultTables
