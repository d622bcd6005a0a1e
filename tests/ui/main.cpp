#include <gtest/gtest.h>

#include <QApplication>

#include "app/World.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    vantor::setUpApplication();
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
