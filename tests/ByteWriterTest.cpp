#include "VantaService_PersistenceArchiver/ByteWriter.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Kestrel {
namespace {

using namespace std::string_view_literals;

std::string bytesOfNumber(std::uint32_t value) {
  ByteWriter writer;
  writer.writeNumber(value);
  return writer.takeBytes();
}

TEST(ByteWriter, WritesNumbersOfEveryLength) {
  EXPECT_EQ(bytesOfNumber(0), "\x00"sv);
  EXPECT_EQ(bytesOfNumber(1), "\x01");
  EXPECT_EQ(bytesOfNumber(127), "\x7F");
  EXPECT_EQ(bytesOfNumber(128), "\x80\x01");
  EXPECT_EQ(bytesOfNumber(16383), "\xFF\x7F");
  EXPECT_EQ(bytesOfNumber(16384), "\x80\x80\x01");
  EXPECT_EQ(bytesOfNumber(500002), "\xA2\xC2\x1E");
  EXPECT_EQ(bytesOfNumber(2097151), "\xFF\xFF\x7F");
  EXPECT_EQ(bytesOfNumber(2097152), "\x80\x80\x80\x01");
  EXPECT_EQ(bytesOfNumber(268435455), "\xFF\xFF\xFF\x7F");
  EXPECT_EQ(bytesOfNumber(268435456), "\x80\x80\x80\x80\x01");
  EXPECT_EQ(bytesOfNumber(4294967295), "\xFF\xFF\xFF\xFF\x0F");
}

TEST(ByteWriter, WritesWordsLowestByteFirst) {
  ByteWriter writer;
  writer.writeWord(0x81020304);
  EXPECT_EQ(writer.getPosition(), 4U);
  writer.writeLongWord(0x8102030405060708);
  EXPECT_EQ(writer.getPosition(), 12U);
  EXPECT_EQ(writer.getBytes(), "\x04\x03\x02\x81\x08\x07\x06\x05\x04\x03\x02\x81"sv);
}

TEST(ByteWriter, ReplacesAWord) {
  ByteWriter writer;
  writer.writeBytes("12345678");
  writer.replaceWord(4, 0x44434241);
  EXPECT_EQ(writer.getBytes(), "1234ABCD");
  writer.replaceWord(1, 0x44434241);
  EXPECT_EQ(writer.getBytes(), "1ABCDBCD");
}

TEST(ByteWriter, IsEmptyWhenItsBytesAreTaken) {
  ByteWriter writer;
  writer.writeBytes("abc");
  EXPECT_EQ(writer.takeBytes(), "abc");
  EXPECT_EQ(writer.getPosition(), 0U);
  EXPECT_EQ(writer.getBytes(), "");
  writer.writeBytes("d");
  EXPECT_EQ(writer.takeBytes(), "d");
}

TEST(ByteWriter, KeepsItsBytesWhenItGrows) {
  ByteWriter writer;
  std::string written;
  for (std::size_t i = 0; i < 3000; ++i) {
    std::string const bytes(i % 7, static_cast<char>('a' + i % 26));
    writer.writeBytes(bytes);
    writer.writeNumber(static_cast<std::uint32_t>(i % 100));
    written += bytes + static_cast<char>(i % 100);
    ASSERT_EQ(writer.getPosition(), written.size());
  }
  writer.writeBytes(std::string(100'000, 'x'));
  EXPECT_EQ(writer.takeBytes(), written + std::string(100'000, 'x'));
}

TEST(ByteWriter, FillsItsRoomToTheLastByte) {
  ByteWriter writer;
  writer.writeBytes(std::string(504, 'x'));
  writer.writeLongWord(0x6867666564636261);
  EXPECT_EQ(writer.getBytes(), std::string(504, 'x') + "abcdefgh");
  writer.writeWord(0x64636261);
  EXPECT_EQ(writer.takeBytes(), std::string(504, 'x') + "abcdefghabcd");
}

TEST(ByteWriter, MakesRoomForTwiceAsMuchButNeverBeyond2GiB) {
  EXPECT_EQ(ByteWriter::genRoom(0, 1), 512U);
  EXPECT_EQ(ByteWriter::genRoom(508, 5), 1016U);
  EXPECT_EQ(ByteWriter::genRoom(512, 2000), 2512U);
  EXPECT_EQ(ByteWriter::genRoom(0x3FFFFFFF, 1), 0x7FFFFFFEU);
  EXPECT_EQ(ByteWriter::genRoom(0x40000000, 1), 0x7FFFFFFFU);
  EXPECT_EQ(ByteWriter::genRoom(0x7FFFFFFE, 1), 0x7FFFFFFFU);
  EXPECT_EQ(ByteWriter::genRoom(0, 0x7FFFFFFF), 0x7FFFFFFFU);
}

TEST(ByteWriter, RefusesMoreThan2GiB) {
  EXPECT_THROW(static_cast<void>(ByteWriter::genRoom(0, 0x80000000)), std::length_error);
  EXPECT_THROW(static_cast<void>(ByteWriter::genRoom(0x7FFFFFFF, 1)), std::length_error);
  EXPECT_THROW(static_cast<void>(ByteWriter::genRoom(0x7FFFFFFB, 5)), std::length_error);
  EXPECT_THROW(static_cast<void>(ByteWriter::genRoom(1, ~std::size_t{0})), std::length_error);
}

}  // namespace
}  // namespace Kestrel
