// The main function of the tests. With QOC_TEST_PLAIN set, all of them run without any shortcut that can be switched
// off, in the thread that they begin in.

#include <gmock/gmock.h>

#include <cstdlib>

#include "support/shortcuts.hpp"

int main(int argc, char **argv) {
  testing::InitGoogleMock(&argc, argv);
  if (std::getenv("QOC_TEST_PLAIN") != nullptr) {
    qoc::test::ShortcutsTaken::take(qoc::test::ShortcutsTaken::none);
  }
  return RUN_ALL_TESTS();
}
