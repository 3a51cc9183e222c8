#include "result_tables/render/RenderArchive.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace Kestrel::ResultTables {
namespace {

using namespace std::string_literals;

TEST(RenderArchive, WritesALineForEachRecord) {
  ArchiveListing const listing{
      {{24, 0, "Tree", 3, {{30, 7U}, {40, 0.5}}}, {32, 1, "", 0, {}}, {123456, 2, "Leaf", 500002, {}}},
      "damage"};
  EXPECT_EQ(renderArchive(listing),
            "      24  Tree 3  @30 7  @40 0.5\n"
            "      32    -\n"
            "  123456      Leaf 500002\n");
  EXPECT_EQ(renderArchive({}), "");
}

/// What a field with the value is shown as.
std::string form(decltype(ArchiveField::value) value) {
  auto const line = renderArchive({{{1, 0, "C", 2, {{9, std::move(value)}}}}, ""});
  constexpr std::string_view before = "       1  C 2  @9 ";
  EXPECT_EQ(line.substr(0, before.size()), before);
  return line.substr(before.size(), line.size() - before.size() - 1);
}

TEST(RenderArchive, TellsKindsOfValuesApart) {
  EXPECT_EQ(form(ArchiveField::Null{}), "null");
  EXPECT_EQ(form(ArchiveField::Reference{24}), "->24");
  EXPECT_EQ(form(5U), "5");
  EXPECT_EQ(form(5.0), "5.0");
  EXPECT_EQ(form(-1e300), "-1e+300");
  EXPECT_EQ(form(-std::numeric_limits<double>::infinity()), "-inf");
  EXPECT_EQ(form(-std::numeric_limits<double>::quiet_NaN()), "nan");
  EXPECT_EQ(form("5"s), "\"5\"");
  EXPECT_EQ(form(ArchiveField::Bytes{"\x00\xFF\n"s, false}), "bytes:00ff0a");
  EXPECT_EQ(form(ArchiveField::Bytes{"ab", true}), "unread:6162");
  EXPECT_EQ(form(ArchiveField::Bytes{"", true}), "unread:");
}

TEST(RenderArchive, KeepsATextOnItsLineAndItsEndVisible) {
  EXPECT_EQ(form("two\nlines \x1b[31m \xFF"s), "\"two␊lines ␛[31m \uFFFD\"");
  EXPECT_EQ(form("\"  @1 \\"s), R"("\"  @1 \\")");
  EXPECT_EQ(form(std::string(1000, 'x')), '"' + std::string(1000, 'x') + '"') << "whole";
  ArchiveListing const listing{{{1, 0, "a\nb", 2, {}}}, ""};
  EXPECT_EQ(renderArchive(listing), "       1  a␊b 2\n");
}

}  // namespace
}  // namespace Kestrel::ResultTables
