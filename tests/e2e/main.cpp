#include <gtest/gtest.h>

#include <QApplication>
#include <cstdio>

#include "app/World.h"

namespace {

/// The offscreen platform says of every window what it cannot do.
void quietly(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (text.startsWith(QLatin1String("This plugin does not support"))) return;
    std::fprintf(stderr, "%d: %s\n", static_cast<int>(type), qPrintable(text));
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(quietly);
    const QApplication application(argc, argv);
    vantor::setUpApplication();
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
