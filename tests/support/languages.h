#pragma once
// Helpers shared by the suites that run in both languages.
#include <string>

#include <gtest/gtest.h>

namespace test_support {

// Names the instances of a suite parameterised on "Chinese?".
inline std::string languageName(const testing::TestParamInfo<bool>& info) {
  return info.param ? "Chinese" : "English";
}

// Number of non-overlapping occurrences of needle in hay.
inline std::size_t countOf(const std::string& hay, const std::string& needle) {
  std::size_t n = 0;
  for (auto at = hay.find(needle); at != std::string::npos; at = hay.find(needle, at + needle.size())) ++n;
  return n;
}

}  // namespace test_support
