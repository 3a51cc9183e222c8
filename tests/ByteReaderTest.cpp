#include "VantaService_PersistenceArchiver/ByteReader.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <string_view>

#include "VantaService_PersistenceArchiver/ArchiveException.h"
#include "VantaService_PersistenceArchiver/ByteWriter.h"

namespace Kestrel {
namespace {

using namespace std::string_view_literals;

/// What is said of a value that cannot be read; "none" when it can.
std::string damageOf(ByteReader& reader, std::function<void(ByteReader&)> const& read) {
  try {
    read(reader);
  } catch (ArchiveException const& error) {
    return error.what();
  }
  return "none";
}

std::string damageOfNumber(std::string_view bytes) {
  ByteReader reader(bytes);
  return damageOf(reader, [](ByteReader& from) { static_cast<void>(from.readNumber()); });
}

TEST(ByteReader, HasNothingWithoutBytes) {
  ByteReader reader;
  EXPECT_EQ(reader.getPosition(), 0U);
  EXPECT_EQ(reader.getBytesLeft(), 0U);
  EXPECT_EQ(damageOfNumber(""), "byte 0: expected 1 more bytes, found 0");
}

TEST(ByteReader, ReadsNumbersOfEveryLength) {
  struct Case {
    std::string_view bytes;
    std::uint32_t value;
  };
  for (auto const& [bytes, value] :
       {Case{"\x00"sv, 0}, Case{"\x01"sv, 1}, Case{"\x7F"sv, 127}, Case{"\x80\x01"sv, 128},
        Case{"\xA2\x03"sv, 418}, Case{"\xFF\x7F"sv, 16383}, Case{"\x80\x80\x01"sv, 16384},
        Case{"\xA2\xC2\x1E"sv, 500002}, Case{"\xFF\xFF\x7F"sv, 2097151}, Case{"\x80\x80\x80\x01"sv, 2097152},
        Case{"\xFF\xFF\xFF\x7F"sv, 268435455}, Case{"\x80\x80\x80\x80\x01"sv, 268435456},
        Case{"\xFF\xFF\xFF\xFF\x0F"sv, 4294967295}}) {
    ByteReader reader(bytes);
    EXPECT_EQ(reader.readNumber(), value);
    EXPECT_EQ(reader.getBytesLeft(), 0U) << value;
  }
}

TEST(ByteReader, StopsBehindANumber) {
  ByteReader reader("\x80\x01\x05\xFF");
  EXPECT_EQ(reader.readNumber(), 128U);
  EXPECT_EQ(reader.getPosition(), 2U);
  EXPECT_EQ(reader.readNumber(), 5U);
  EXPECT_EQ(reader.getPosition(), 3U);
  EXPECT_EQ(reader.getBytesLeft(), 1U);
}

TEST(ByteReader, RefusesNumbersThatAreLongerThanTheyNeedToBe) {
  EXPECT_EQ(damageOfNumber("\x80\x00"sv), "byte 2: the number is longer than it needs to be");
  EXPECT_EQ(damageOfNumber("\xFF\x80\x00"sv), "byte 3: the number is longer than it needs to be");
  EXPECT_EQ(damageOfNumber("\xFF\xFF\xFF\xFF\x00"sv), "byte 5: the number is longer than it needs to be");
}

TEST(ByteReader, RefusesNumbersBeyond32Bits) {
  EXPECT_EQ(damageOfNumber("\xFF\xFF\xFF\xFF\x10"sv), "byte 5: the number is larger than 32 bits");
  EXPECT_EQ(damageOfNumber("\x80\x80\x80\x80\x8F\x01"sv), "byte 5: the number is larger than 32 bits");
}

TEST(ByteReader, RefusesNumbersThatAreCut) {
  EXPECT_EQ(damageOfNumber("\x80"sv), "byte 1: expected 1 more bytes, found 0");
  EXPECT_EQ(damageOfNumber("\xFF\xFF\xFF\xFF"sv), "byte 4: expected 1 more bytes, found 0");
}

TEST(ByteReader, ReadsWordsLowestByteFirst) {
  ByteReader reader("\x04\x03\x02\x81\x08\x07\x06\x05\x04\x03\x02\x81"sv);
  EXPECT_EQ(reader.readWord(), 0x81020304);
  EXPECT_EQ(reader.getPosition(), 4U);
  EXPECT_EQ(reader.readLongWord(), 0x8102030405060708);
  EXPECT_EQ(reader.getBytesLeft(), 0U);
}

TEST(ByteReader, RefusesWhatDoesNotFit) {
  ByteReader reader("1234567"sv);
  reader.set(4, 7);
  EXPECT_EQ(damageOf(reader, [](auto& from) { static_cast<void>(from.readWord()); }),
            "byte 4: expected 4 more bytes, found 3");
  reader.set(0, 7);
  EXPECT_EQ(damageOf(reader, [](auto& from) { static_cast<void>(from.readLongWord()); }),
            "byte 0: expected 8 more bytes, found 7");
  EXPECT_EQ(damageOf(reader, [](auto& from) { static_cast<void>(from.readBytes(8)); }),
            "byte 0: expected 8 more bytes, found 7");
  EXPECT_EQ(damageOf(reader, [](auto& from) { static_cast<void>(from.readBytes(0xFFFFFFFF)); }),
            "byte 0: expected 4294967295 more bytes, found 7");
}

TEST(ByteReader, ReadsBytesWhereTheyStand) {
  auto const bytes = "1234567"sv;
  ByteReader reader(bytes);
  reader.set(1, 6);
  EXPECT_EQ(reader.getBytesLeft(), 5U);
  auto const read = reader.readBytes(3);
  EXPECT_EQ(read, "234");
  EXPECT_EQ(read.data(), bytes.data() + 1);
  EXPECT_EQ(reader.readBytes(2), "56");
  EXPECT_EQ(reader.readBytes(0), "");
  EXPECT_EQ(reader.getPosition(), 6U);
}

TEST(ByteReader, StaysInsideItsBound) {
  ByteReader reader("\x80\x01\x02"sv);
  reader.set(0, 1);
  EXPECT_EQ(damageOf(reader, [](auto& from) { static_cast<void>(from.readNumber()); }),
            "byte 1: expected 1 more bytes, found 0");
  reader.set(2, 2);
  EXPECT_EQ(damageOf(reader, [](auto& from) { static_cast<void>(from.readNumber()); }),
            "byte 2: expected 1 more bytes, found 0");
  reader.set(2, 3);
  EXPECT_EQ(reader.readNumber(), 2U);
}

TEST(ByteReader, ReportsDamageWhereItStands) {
  ByteReader reader("1234"sv);
  reader.set(3, 4);
  EXPECT_EQ(damageOf(reader, [](auto& from) { from.fail("the reason"); }), "byte 3: the reason");
}

TEST(ByteReader, ReadsWhatIsWritten) {
  std::mt19937 random(11);
  ByteWriter writer;
  std::vector<std::uint32_t> numbers(2000);
  for (auto& number : numbers) {
    number = static_cast<std::uint32_t>(random()) >> random() % 32;
    writer.writeNumber(number);
  }
  auto const bytes = writer.takeBytes();
  ByteReader reader{std::string_view(bytes)};
  for (auto const number : numbers) ASSERT_EQ(reader.readNumber(), number);
  EXPECT_EQ(reader.getBytesLeft(), 0U);
}

}  // namespace
}  // namespace Kestrel
