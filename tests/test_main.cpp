#include <gtest/gtest.h>

#include <QCoreApplication>

// The link delivers its events through the Qt event loop, so the tests need an application object.
int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
