#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Kestrel::ResultTables {

/// Numbers that stand side by side in a row and belong together.
struct CalculixQuantity {
  std::string name;                     ///< may be empty
  std::vector<std::string> components;  ///< empty: as many as there are, which the heading does not name

  [[nodiscard]] bool operator==(CalculixQuantity const&) const = default;
};

/// What a block is of, as its heading says.
struct CalculixHeading {
  enum class Rows {
    ofTotal,     ///< one row, of numbers only
    ofNodes,     ///< the number of the node before each
    ofElements,  ///< the number of the element, with `labels` 2 also that of an integration point
    ofContact,   ///< the number of the slave node, or of the slave element and its face
    statistics,  ///< rows under headings of their own (`quantitiesOfStatistics`)
  };

  /// The set; "SLAVE/MASTER" of a contact pair, "surface NAME" of a section; empty for all that is in
  /// contact.
  std::string entity;
  CalculixQuantity quantity;
  Rows rows = Rows::ofTotal;
  std::size_t labels = 0;  ///< how many whole numbers stand before the values of a row
};

/// A heading whose end is cut off in two.
struct TimedHeading {
  std::string_view title;  ///< up to "and time" or "time": "forces (fx,fy,fz) for set TOP"
  std::string_view time;   ///< text behind it
};

/// The parts of a line such as " forces (fx,fy,fz) for set TOP and time  0.1E+01"; nothing for any other.
[[nodiscard]] std::optional<TimedHeading> splitAtTime(std::string_view line);

/// What `title` announces; nothing where it is no heading, or one whose rows are not known. Blanks that are
/// missing or more than usual do not matter ("heat flux (elem, integ.pnt.,qx,qy,qz) for setALL").
[[nodiscard]] std::optional<CalculixHeading> parseHeading(std::string_view title);

/// What the row under a heading within statistics ("area,  normal force (+ = tension) and shear force
/// (size)") holds, from left to right; empty where `line` is no such heading.
[[nodiscard]] std::vector<CalculixQuantity> quantitiesOfStatistics(std::string_view line);

/// The words of a line of spaced letters, without what follows the first digit: "EIGENVALUE OUTPUT" for
/// "     E I G E N V A L U E   O U T P U T". Empty for any other line.
[[nodiscard]] std::string wordsOfSpacedLetters(std::string_view line);

}  // namespace Kestrel::ResultTables
