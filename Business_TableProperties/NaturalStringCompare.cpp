#include "Business_TableProperties/NaturalStringCompare.h"

#include <cctype>

namespace Kestrel {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

void skipWhiteSpace(char const*& cursor) {
  while (std::isspace(static_cast<unsigned char>(*cursor)) != 0) ++cursor;
}

signed char foldCase(char c) { return static_cast<signed char>(std::toupper(static_cast<unsigned char>(c))); }

/// Compares the runs of digits at the cursors: -1, 0 or 1. Both cursors are past their runs when they are
/// equal.
int compareDigits(char const*& a, char const*& b) {
  bool const isFraction = *a == '0' || *b == '0';
  int firstDifference = 0;
  for (; isDigit(*a) && isDigit(*b); ++a, ++b) {
    if (firstDifference == 0 && *a != *b) firstDifference = *a < *b ? -1 : 1;
    if (isFraction && firstDifference != 0) return firstDifference;
  }
  if (isDigit(*b)) return -1;
  if (isDigit(*a)) return 1;
  return firstDifference;
}

}  // namespace

bool NaturalStringCompare::operator()(std::string const& a, std::string const& b) const {
  char const* atA = a.c_str();
  char const* atB = b.c_str();
  for (;;) {
    skipWhiteSpace(atA);
    skipWhiteSpace(atB);
    if (isDigit(*atA) && isDigit(*atB)) {
      int const order = compareDigits(atA, atB);
      if (order != 0) return order < 0;
      continue;
    }
    auto const foldedA = foldCase(*atA);
    auto const foldedB = foldCase(*atB);
    if (foldedA != foldedB) return foldedA < foldedB;
    if (foldedA == 0) return false;
    ++atA;
    ++atB;
  }
}

}  // namespace Kestrel
