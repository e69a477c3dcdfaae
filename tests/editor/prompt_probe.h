#pragma once
// A command for the tests only: it asks which prompt kind to try, sets the
// input-control bits and keywords it is given, runs that prompt and prints
// the result code and value, so a script can drive every prompt kind.
#include "host/host.h"

namespace corvane_test {

// Registers PROBE (global TEST_PROBE) in the group "TESTS".
void registerPromptProbe(host::Host& host);

}  // namespace corvane_test
