#include "result_tables/import/CalculixHeadings.h"

#include <gmock/gmock.h>

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Rows = CalculixHeading::Rows;

struct Known {
  std::string_view title;
  char const* entity;
  char const* quantity;
  std::vector<std::string> components;
  Rows rows;
  std::size_t labels;
};

// As CalculiX 2.20 prints them, words that run together included.
TEST(CalculixHeadings, SayWhatTheirRowsAreOf) {
  Known const cases[] = {
      {"forces (fx,fy,fz) for set TOP", "TOP", "forces", {"fx", "fy", "fz"}, Rows::ofNodes, 1},
      {"temperatures for set TOP", "TOP", "", {"temperatures"}, Rows::ofNodes, 1},
      {"network pressures (total pressure for gases, static pressure for liquids and fluid depth for "
       "channels) for "
       "set PIPE",
       "PIPE",
       "",
       {"network pressures"},
       Rows::ofNodes,
       1},
      {"centrifugal force(element,omega square) for set ALL",
       "ALL",
       "centrifugal force",
       {"omega square"},
       Rows::ofElements,
       1},
      {"total force (fx,fy,fz) for set TOP", "TOP", "total force", {"fx", "fy", "fz"}, Rows::ofTotal, 0},
      {"total mass for set ALL", "ALL", "", {"total mass"}, Rows::ofTotal, 0},
      {"center of gravity for set ALL", "ALL", "center of gravity", {"x", "y", "z"}, Rows::ofTotal, 0},
      {"total mass moment of inertia about the center ofgravity (xx,yy,zz,xy,xz,yz) for set ALL",
       "ALL",
       "total mass moment of inertia about the center ofgravity",
       {"xx", "yy", "zz", "xy", "xz", "yz"},
       Rows::ofTotal,
       0},
      {"stresses (elem, integ.pnt.,sxx,syy,szz,sxy,sxz,syz) for set ALL",
       "ALL",
       "stresses",
       {"sxx", "syy", "szz", "sxy", "sxz", "syz"},
       Rows::ofElements,
       2},
      {"equivalent plastic strain (elem, integ.pnt.,pe)for set ALL",
       "ALL",
       "equivalent plastic strain",
       {"pe"},
       Rows::ofElements,
       2},
      {"heat flux (elem, integ.pnt.,qx,qy,qz) for setALL",
       "ALL",
       "heat flux",
       {"qx", "qy", "qz"},
       Rows::ofElements,
       2},
      {"internal state variables (elem, integ.pnt.,values) for set ALL",
       "ALL",
       "internal state variables",
       {},
       Rows::ofElements,
       2},
      {"volume (element, volume) for set ALL", "ALL", "volume", {"volume"}, Rows::ofElements, 1},
      {"mass (element, mass) and mass moment of itertia(xx,yy,zz,xy,xz,yz) for set ALL",
       "ALL",
       "mass",
       {"mass", "xx", "yy", "zz", "xy", "xz", "yz"},
       Rows::ofElements,
       1},
      {"contact stress (slave node,press,tang1,tang2) for all contact elements",
       "",
       "contact stress",
       {"press", "tang1", "tang2"},
       Rows::ofContact,
       1},
      {"contact print energy (slave node,energy) forall contact elements",
       "",
       "contact print energy",
       {"energy"},
       Rows::ofContact,
       1},
      {"contact print energy (slave element+face,energy)for all contact elements",
       "",
       "contact print energy",
       {"energy"},
       Rows::ofContact,
       2},
      {"total contact spring energy for", "", "", {"total contact spring energy"}, Rows::ofTotal, 0},
      {"statistics for slave set PUNCH, master set DIE", "PUNCH/DIE", "", {}, Rows::statistics, 0},
      {"statistics for surface set CUT", "surface CUT", "", {}, Rows::statistics, 0},
      {"forces   ( fx, fy ,fz )   for  set   TOP", "TOP", "forces", {"fx", "fy", "fz"}, Rows::ofNodes, 1},
  };
  for (auto const& c : cases) {
    auto const heading = parseHeading(c.title);
    ASSERT_TRUE(heading.has_value()) << c.title;
    EXPECT_EQ(heading->entity, c.entity) << c.title;
    EXPECT_EQ(heading->quantity.name, c.quantity) << c.title;
    EXPECT_EQ(heading->quantity.components, c.components) << c.title;
    EXPECT_EQ(heading->rows, c.rows) << c.title;
    EXPECT_EQ(heading->labels, c.labels) << c.title;
  }
}

TEST(CalculixHeadings, AreNotWhatTheirRowsAreNotKnownOf) {
  for (auto const* title :
       {"displacements (v(i),i=1..ndof) for set TOP", "forces (fx,fy,fz for set TOP",
        "forces (fx,,fz) for set TOP", "forces (fx) twice for set TOP", "forces (fx,fy,fz) for set",
        "for set TOP", "forces of TOP", "contact elements for", "stresses (elem, integ.pnt.) for set TOP",
        "statistics for slave set A", ""}) {
    EXPECT_FALSE(parseHeading(title).has_value()) << title;
  }
}

TEST(CalculixHeadings, EndWithATime) {
  auto const partsOf = [](std::string_view line) {
    auto const parts = splitAtTime(line);
    return parts ? std::pair(std::string(parts->title), std::string(parts->time))
                 : std::pair<std::string, std::string>();
  };
  EXPECT_EQ(partsOf("forces (fx) for set TIMES and time  0.1E+01"),
            std::pair(std::string("forces (fx) for set TIMES"), std::string("0.1E+01")));
  EXPECT_EQ(partsOf("stress for all contact elements and time-0.1E+01").second, "-0.1E+01");
  EXPECT_EQ(partsOf("total number of contact elements for time  1").first,
            "total number of contact elements for");
  EXPECT_EQ(partsOf("forces (fx) for set A and   time").second, "");
  EXPECT_FALSE(splitAtTime("the time is 1").has_value());
  EXPECT_FALSE(splitAtTime("(RAD/TIME)").has_value());
}

TEST(CalculixHeadings, WithinStatisticsNameTheValuesOfARow) {
  auto const force =
      quantitiesOfStatistics("total surface force (fx,fy,fz) and moment about the origin(mx,my,mz)");
  ASSERT_EQ(force.size(), 2U);
  EXPECT_EQ(force[0].name, "total surface force");
  EXPECT_THAT(force[0].components, ElementsAre("fx", "fy", "fz"));
  EXPECT_EQ(force[1].name, "moment about the origin");
  EXPECT_EQ(quantitiesOfStatistics(
                "total normal surface force (fx,fy,fz) and its moment about the origin (mx,my,mz)")
                .at(0)
                .name,
            "total normal surface force");
  EXPECT_EQ(quantitiesOfStatistics("center of gravity and mean normal").at(1).name, "mean normal");
  EXPECT_THAT(quantitiesOfStatistics("moment about the center of gravity(mx,my,mz)").at(0).components,
              ElementsAre("mx", "my", "mz"));
  EXPECT_THAT(
      quantitiesOfStatistics("area,  normal force (+ = tension) and shear force (size)").at(0).components,
      ElementsAre("area", "normal force", "shear force"));
  EXPECT_THAT(quantitiesOfStatistics(
                  "area, normal force (+ = tension), shear force (size), torque and bending moment (size)")
                  .at(0)
                  .components,
              ElementsAre("area", "normal force", "shear force", "torque", "bending moment"));
  EXPECT_THAT(quantitiesOfStatistics("area of contact"), IsEmpty());
}

TEST(CalculixHeadings, OfSpacedLettersAreWords) {
  EXPECT_EQ(wordsOfSpacedLetters("     E I G E N V A L U E   O U T P U T"), "EIGENVALUE OUTPUT");
  EXPECT_EQ(wordsOfSpacedLetters("S T E P       1"), "STEP");
  EXPECT_EQ(wordsOfSpacedLetters("P A R T I C I P A T I O N   F A C T O R S   F O R   M O D E       1"),
            "PARTICIPATION FACTORS FOR MODE");
  EXPECT_EQ(wordsOfSpacedLetters("MODE NO    EIGENVALUE"), "");
  EXPECT_EQ(wordsOfSpacedLetters("A"), "");
  EXPECT_EQ(wordsOfSpacedLetters(""), "");
}

}  // namespace
}  // namespace Kestrel::ResultTables
