// The minimum size of a classic netCDF file. The headers are written here byte by byte.

#include "tersify/netcdf_classic.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

#include "support/classic_netcdf.h"
#include "tersify/netcdf_fault.h"

namespace veldmark::tersify {
namespace {

using Header = veldmark::testing::ClassicHeader;

std::uint64_t least(const std::string& bytes) {
  std::string rest = bytes;
  return least_classic_size([&](char* buffer, std::size_t size) {
    const std::size_t count = rest.copy(buffer, std::min<std::size_t>(size, 7));
    rest.erase(0, count);
    return count;
  });
}

// Dimensions: time (unlimited, `records` records), lat 3, lon 5. Variables: lon(lon) at
// offset 200; record variables tmp(time, lat, lon) at offset 300 and, if there are two,
// stn(time) of type short after it.
std::string header(int version, std::uint64_t records, bool two) {
  Header header(version);
  header.count(records);
  header.list(Header::kDimensions, 3);
  header.name("time").count(0).name("lat").count(3).name("lon").count(5);
  header.list(Header::kAttributes, 1).text_attribute("a", "a history");
  header.list(Header::kVariables, two ? 3 : 2);
  header.name("lon")
      .count(1)
      .count(2)
      .no_list()
      .word(Header::kFloat)
      .count(20)
      .offset(200);
  header.name("tmp").count(3).count(0).count(1).count(2);
  header.list(Header::kAttributes, 2).text_attribute("a", "x").text_attribute("a", "");
  header.word(Header::kFloat).count(60).offset(300);
  if (two) {
    header.name("stn")
        .count(1)
        .count(0)
        .no_list()
        .word(Header::kShort)
        .count(4)
        .offset(360);
  }
  return header.bytes();
}

TEST(LeastClassicSize, CountsTheLastRecord) {
  for (const int version : {1, 2, 5}) {
    EXPECT_EQ(least(header(version, 2, false)), 300U + 60 + 60);
    // Records of 64 bytes: a short is padded to four.
    EXPECT_EQ(least(header(version, 2, true)), 360U + 64 + 2);
  }
}

TEST(LeastClassicSize, WithoutRecordsTheOtherVariablesCount) {
  EXPECT_EQ(least(header(1, 0, true)), 220U);
}

TEST(LeastClassicSize, ASingleVariableOfRecordsIsNotPadded) {
  Header header(1);
  header.count(3).list(Header::kDimensions, 1).name("time").count(0).no_list();
  header.list(Header::kVariables, 1).name("v").count(1).count(0).no_list();
  header.word(Header::kShort).count(4).offset(100);
  EXPECT_EQ(least(header.bytes()), 100U + 3 * 2);
}

TEST(LeastClassicSize, SizesDontOverflow) {
  Header header(5);
  header.count(1).list(Header::kDimensions, 2);
  header.name("a").count(1ULL << 62).name("b").count(1ULL << 62).no_list();
  header.list(Header::kVariables, 1).name("v").count(2).count(0).count(1).no_list();
  header.word(Header::kFloat).count(0).offset(100);
  EXPECT_EQ(least(header.bytes()), std::numeric_limits<std::uint64_t>::max());
  Header largest(5);  // 4 * (2^62 - 1) bytes
  largest.count(0).list(Header::kDimensions, 1);
  largest.name("a").count((1ULL << 62) - 1).no_list();
  largest.list(Header::kVariables, 1).name("v").count(1).count(0).no_list();
  largest.word(Header::kFloat).count(0).offset(0);
  EXPECT_EQ(least(largest.bytes()), std::numeric_limits<std::uint64_t>::max() - 3);
}

// A file with one variable of a single value, at offset 100.
std::string one_value(std::uint32_t type) {
  Header header(5);
  header.count(0).no_list().no_list();
  header.list(Header::kVariables, 1).name("v").count(0).no_list();
  return header.word(type).count(8).offset(100).bytes();
}

TEST(LeastClassicSize, KnowsTheSizesOfAllTypes) {
  EXPECT_EQ(least(one_value(1)), 101U);   // byte
  EXPECT_EQ(least(one_value(2)), 101U);   // char
  EXPECT_EQ(least(one_value(3)), 102U);   // short
  EXPECT_EQ(least(one_value(4)), 104U);   // int
  EXPECT_EQ(least(one_value(5)), 104U);   // float
  EXPECT_EQ(least(one_value(6)), 108U);   // double
  EXPECT_EQ(least(one_value(7)), 101U);   // unsigned byte
  EXPECT_EQ(least(one_value(8)), 102U);   // unsigned short
  EXPECT_EQ(least(one_value(9)), 104U);   // unsigned int
  EXPECT_EQ(least(one_value(10)), 108U);  // 64-bit int
  EXPECT_EQ(least(one_value(11)), 108U);  // unsigned 64-bit int
}

TEST(LeastClassicSize, IsZeroWithoutVariables) {
  EXPECT_EQ(least(Header(1).count(0).no_list().no_list().no_list().bytes()), 0U);
}

TEST(LeastClassicSize, AnAttributeMayBeEmpty) {
  Header header(1);
  header.count(0).no_list().list(Header::kAttributes, 1).text_attribute("note", "");
  EXPECT_EQ(least(header.no_list().bytes()), 0U);
}

TEST(LeastClassicSize, IsZeroForOtherFiles) {
  EXPECT_EQ(least(""), 0U);
  EXPECT_EQ(least("CDF"), 0U);
  const std::string rest = header(1, 2, true).substr(4);
  EXPECT_GT(least("CDF\x01" + rest), 0U);
  EXPECT_EQ(least("CDF\x03" + rest), 0U);
  EXPECT_EQ(least("XDF\x01" + rest), 0U);
  EXPECT_EQ(least("\x89HDF\r\n\x1a\n"), 0U);
}

void expect_fault(const std::string& message, const std::string& bytes) {
  try {
    least(bytes);
    ADD_FAILURE() << "no fault; expected: " << message;
  } catch (const NetcdfFault& fault) {
    EXPECT_EQ(fault.what(), message);
  }
}

TEST(LeastClassicSize, AHeaderThatEndsTooEarlyIsAFault) {
  const std::string whole = header(2, 2, true);
  for (std::size_t size = 4; size < whole.size(); ++size) {
    expect_fault("the file ends in its header", whole.substr(0, size));
  }
}

TEST(LeastClassicSize, AnInvalidHeaderIsAFault) {
  expect_fault("the file's header is damaged", one_value(0));
  expect_fault("the file's header is damaged", one_value(12));
  Header header(1);
  header.count(0).no_list().no_list();
  header.list(Header::kVariables, 1).name("v").count(1).count(0);
  expect_fault("the file's header is damaged", header.bytes());
  Header other(1);
  other.count(0)
      .no_list()
      .list(Header::kAttributes, 1)
      .name("a")
      .word(99)
      .count(1)
      .word(0);
  expect_fault("the file's header is damaged", other.bytes());
}

}  // namespace
}  // namespace veldmark::tersify
