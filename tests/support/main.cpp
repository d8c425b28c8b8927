// The test program; started with --child=NAME it is a second process of one of its own tests.

#include <gtest/gtest.h>

#include "tests/support/child_process.h"

int main(int argc, char** argv) {
  if (IsChild(argc, argv)) return RunAsChild(argc, argv);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
