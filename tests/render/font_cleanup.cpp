// Frees cairo's and fontconfig's process-wide font caches when the test
// program ends, so leak checkers under the sanitizers see only our memory.
#include <gtest/gtest.h>

#include "standalone/render/render.h"

namespace {

class FontCaches : public ::testing::Environment {
 public:
  void TearDown() override { standalone::releaseFontCaches(); }
};

const auto* const kRegistered = ::testing::AddGlobalTestEnvironment(new FontCaches);

}  // namespace
