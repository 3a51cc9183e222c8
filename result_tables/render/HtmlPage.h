#pragma once

#include <optional>
#include <string>

namespace Kestrel::ResultTables {

/// What a report shows. Everything is HTML, as `HtmlWriter` makes it, but for the title.
struct HtmlPage {
  std::string title;
  std::string main;           ///< what stands in the element `main`
  std::string curves = "{}";  ///< as JSON
};

/// The page as one file that needs no other: its style and its script are in it, and a content security
/// policy that allows these two alone, so that it can neither load anything nor send anything away. Its texts
/// and numbers are in the language of the environment.
[[nodiscard]] std::string renderHtmlPage(HtmlPage const& page);

/// What stands between the digits of a number as people write it in the language of the environment.
[[nodiscard]] char decimalMarkInHtml();

/// A number as people write it in that language, with up to `digits` significant digits.
[[nodiscard]] std::string numberInHtml(double value, int digits);

/// A part of a whole, in the same way: "104 %".
[[nodiscard]] std::string percentInHtml(double ratio);

/// The class by which the style draws how much of its limit a value takes: "u0" to "u20" in steps of 5
/// percent, "u21" beyond the limit, empty where that is not known.
[[nodiscard]] std::string utilisationClass(std::optional<double> utilisation, bool isExceeded);

}  // namespace Kestrel::ResultTables
