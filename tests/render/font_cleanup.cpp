// Frees cairo's and fontconfig's process-wide font caches when the test
// program ends, so leak checkers under the sanitizers see only our memory.
#include <cairo.h>
#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

namespace {

class FontCaches : public ::testing::Environment {
 public:
  void TearDown() override {
    cairo_debug_reset_static_data();
    FcFini();
  }
};

const auto* const kRegistered = ::testing::AddGlobalTestEnvironment(new FontCaches);

}  // namespace
