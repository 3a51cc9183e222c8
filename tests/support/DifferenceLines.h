#pragma once

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/Shell.h"

namespace Kestrel::ResultTables {

/// What a command has put out that compares in JSON, each difference as "OP20 changed 20 31". Its exit code
/// says whether there are any.
inline std::vector<std::string> differenceLines(ShellResult const& result) {
  EXPECT_EQ(result.err, "");
  auto const output = nlohmann::json::parse(result.out);
  std::vector<std::string> lines;
  for (auto const& difference : output.at("differences")) {
    lines.push_back(fmt::format("{} {} {} {}", difference.at("unit").get<std::string>(),
                                difference.at("kind").get<std::string>(), difference.at("before").dump(),
                                difference.at("after").dump()));
  }
  EXPECT_EQ(result.exitCode, lines.empty() ? 0 : 1);
  return lines;
}

}  // namespace Kestrel::ResultTables
