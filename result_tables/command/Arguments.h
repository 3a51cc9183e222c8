#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace Kestrel::ResultTables {

/// A list at the end of a help text: names and what they mean.
struct HelpSection {
  std::string heading;
  std::vector<std::pair<std::string, std::string>> rows;
};

/// What a shell offers for a value that is being typed.
struct Offer {
  enum class Kind { nothing, files, resultsFiles, units };

  Kind kind = Kind::nothing;
  std::vector<std::string_view> names{};  ///< of a value that is one of a few
};

/// What a command takes from the command line. The command declares it; what was given is handed on when all
/// of the command line is understood.
class Arguments {
 public:
  /// Gets one text that was given; an `Error` when it is not what it should be.
  using Take = std::function<void(std::string const& text)>;
  enum class Count { atMostOne, one, any, atLeastOne };

  /// Declares to `app`, which must outlive this object.
  explicit Arguments(CLI::App& app) : m_app(&app) {}

  /// Something that is known by its place behind the command. REQUIRES: `one` or `atLeastOne`.
  void operand(std::string const& name, Count count, std::string const& help, Take take,
               Offer offer = {Offer::Kind::files});
  /// Something with a value behind its name, which begins with "--".
  void option(std::string const& name, std::string const& valueName, Count count, std::string const& help,
              Take take, Offer offer = {});
  void flag(std::string const& name, std::string const& help, bool& isGiven);
  /// The same where more than a note is taken of it.
  void flag(std::string const& name, std::string const& help, std::function<void()> onGiven);
  void addHelp(HelpSection section) { m_sections.push_back(std::move(section)); }

  /// Hands on what was given, in the order of declaration.
  void handOn() const;

  /// What a shell offers for the value of an option or an operand of this command.
  [[nodiscard]] Offer offerFor(CLI::Option const& option) const;

  [[nodiscard]] CLI::App const& app() const { return *m_app; }
  [[nodiscard]] std::vector<HelpSection> const& helpSections() const { return m_sections; }

 private:
  struct Declared {
    CLI::Option const* option;
    Take take;
    Offer offer;
  };

  CLI::Option& declare(std::string const& name, Count count, std::string const& help, Take take, Offer offer);

  CLI::App* m_app;
  std::vector<Declared> m_declared;
  std::vector<HelpSection> m_sections;
};

/// Of an option or an operand.
[[nodiscard]] bool takesAValue(CLI::Option const& option);
[[nodiscard]] bool isRepeatable(CLI::Option const& option);

/// Keeps a text as it is.
[[nodiscard]] Arguments::Take into(std::string& target);
[[nodiscard]] Arguments::Take into(std::vector<std::string>& target);

}  // namespace Kestrel::ResultTables
