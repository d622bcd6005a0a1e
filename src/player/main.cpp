#include <QApplication>
#include <cstdio>
#include <iostream>

#include "app/World.h"
#include "player/Session.h"

namespace {

/// The platform without a display has a remark for every window and about its folders; a session's
/// output is for the reader of the session.
void tell(QtMsgType, const QMessageLogContext&, const QString& text) {
    if (text.contains(QLatin1String("plugin does not support"))) return;
    if (text.startsWith(QLatin1String("QStandardPaths: "))) return;
    std::cerr << text.toStdString() << '\n';
}

}  // namespace

int main(int argc, char** argv) {
    using namespace vantor;
    qInstallMessageHandler(tell);
    const QApplication application(argc, argv);
    setUpApplication();

    std::vector<std::string> arguments;
    for (const QString& word : QApplication::arguments().mid(1)) {
        arguments.push_back(word.toStdString());
    }
    const player::SessionOptions options = player::parseSessionOptions(arguments);
    if (options.error.empty() && options.program.help) {
        std::cout << player::sessionHelp();
        return player::kAllHeld;
    }
    if (options.error.empty() && options.program.version) {
        std::cout << QApplication::applicationVersion().toStdString() << '\n';
        return player::kAllHeld;
    }
    if (!options.error.empty()) {
        std::cerr << "vantor-player: " << options.error << "\n\n" << player::sessionHelp();
        return player::kNotStarted;
    }
    return player::playSession(options, std::cout, std::cerr);
}
