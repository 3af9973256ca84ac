#include <gtest/gtest.h>

#include "qt/Desktop.h"

/// The tests need no screen, and no settings of the user's desktop either.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const sorbel::Desktop desktop(argc, argv);
    return RUN_ALL_TESTS();
}
