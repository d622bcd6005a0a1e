#include "app/World.h"

#include <QApplication>
#include <QStandardPaths>
#include <QTimer>

#include "app/Configuration.h"
#include "app/ProgramFolder.h"
#include "platform/qt/QtText.h"

namespace vantor {

namespace fs = std::filesystem;

namespace {

constexpr const char* kName = "vantor-programmer";

fs::path installedData() {
    const fs::path beside = pathFromQt(QCoreApplication::applicationDirPath());
    fs::path shared = beside.parent_path() / "share" / kName;
    std::error_code ignored;
    if (fs::is_directory(shared, ignored)) return shared;
    // A program that was built and not installed takes what it was built from.
    return VANTOR_DATA_DIR;
}

fs::path perUserFolder() {
    return pathFromQt(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
}

}  // namespace

World::World(const fs::path& folder, const CommandLine& commandLine)
    : port(map), ports(map), prompts(loop), guard(folder) {
    map.readFile(folder / "ports.txt");
    for (const auto& [number, device] : commandLine.ports) map.assign(number, device);
}

void setUpApplication() {
    QCoreApplication::setApplicationName(QLatin1String(kName));
    QCoreApplication::setApplicationVersion(QStringLiteral(VANTOR_VERSION));
    QApplication::setStyle(QStringLiteral("Fusion"));
    // The main window is hidden while an action window is open, and between the start-up window
    // and the main one nothing is to be seen at all.
    QApplication::setQuitOnLastWindowClosed(false);
}

CommandLine commandLineOfProcess() {
    std::vector<std::string> arguments;
    const QStringList all = QCoreApplication::arguments();
    for (const QString& argument : all.mid(1)) arguments.push_back(argument.toStdString());
    return parseCommandLine(arguments);
}

fs::path programFolder(const CommandLine& commandLine) {
    FolderPlaces places{.besideProgram = pathFromQt(QCoreApplication::applicationDirPath()),
                        .installedData = installedData(),
                        .perUser = perUserFolder(),
                        .given = commandLine.folder};
    if (!commandLine.simulate) return chooseProgramFolder(places);
    if (!places.given) places.given = places.perUser / "simulator";
    fs::path folder = chooseProgramFolder(places);
    try {
        if (!readConfiguration(folder)) writeConfiguration(folder, {}, {});
    } catch (const std::system_error&) {
        // Then the first run asks, and tells why nothing can be kept.
    }
    return folder;
}

int runProgram(const Platform& platform, const fs::path& folder) {
    // exit(), not quit(): that one asks every window first, and ours keep their X to themselves.
    Program program(platform, folder, [] { QCoreApplication::exit(0); });
    QTimer::singleShot(0, qApp, [&program] { program.load(); });
    return QApplication::exec();
}

}  // namespace vantor
