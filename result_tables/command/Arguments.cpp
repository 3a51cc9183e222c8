#include "result_tables/command/Arguments.h"

#include <CLI/CLI.hpp>

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

CLI::Option& Arguments::declare(std::string const& name, Count count, std::string const& help, Take take,
                                Offer offer) {
  auto const keep = [](CLI::results_t const&) { return true; };
  auto& option = *m_app->add_option(name, keep, help);
  option.required(count == Count::one || count == Count::atLeastOne);
  bool const isRepeatable = count == Count::any || count == Count::atLeastOne;
  if (isRepeatable) option.expected(1, -1);
  // Operands follow one another; an option's name stands before each of its values.
  option.allow_extra_args(isRepeatable && option.get_positional());
  m_declared.push_back({&option, std::move(take), std::move(offer)});
  return option;
}

void Arguments::operand(std::string const& name, Count count, std::string const& help, Take take,
                        Offer offer) {
  declare(name, count, help, std::move(take), std::move(offer));
}

void Arguments::option(std::string const& name, std::string const& valueName, Count count,
                       std::string const& help, Take take, Offer offer) {
  declare(name, count, help, std::move(take), std::move(offer)).type_name(valueName);
}

void Arguments::flag(std::string const& name, std::string const& help, bool& isGiven) {
  flag(name, help, [&isGiven] { isGiven = true; });
}

void Arguments::flag(std::string const& name, std::string const& help, std::function<void()> onGiven) {
  m_declared.push_back({m_app->add_flag(name, help),
                        [name, onGiven = std::move(onGiven)](std::string const& text) {
                          if (text != "true")
                            throw Error(tr("{}: expected no value, found {}", name, quote(text)));
                          onGiven();
                        },
                        {}});
}

Offer Arguments::offerFor(CLI::Option const& option) const {
  for (auto const& declared : m_declared) {
    if (declared.option == &option) return declared.offer;
  }
  return {};
}

void Arguments::handOn() const {
  for (auto const& [option, take, offer] : m_declared) {
    for (auto const& text : option->results()) take(text);
  }
}

bool takesAValue(CLI::Option const& option) { return option.get_items_expected_max() > 0; }

bool isRepeatable(CLI::Option const& option) { return option.get_items_expected_max() > 1; }

Arguments::Take into(std::string& target) {
  return [&target](std::string const& text) { target = text; };
}

Arguments::Take into(std::vector<std::string>& target) {
  return [&target](std::string const& text) { target.push_back(text); };
}

}  // namespace Kestrel::ResultTables
