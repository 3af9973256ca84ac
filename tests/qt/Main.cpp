#include <gtest/gtest.h>

#include <QApplication>

/// The tests need no screen, and no settings of the user's desktop either.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const QApplication desktop(argc, argv);
    return RUN_ALL_TESTS();
}
