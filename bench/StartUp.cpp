#include <sys/resource.h>
#include <unistd.h>

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <chrono>
#include <fstream>
#include <iostream>

#include "app/World.h"
#include "boxsim/SimulatedBox.h"

// What the program costs at rest: time to the first painted window, processor time with the port
// open and nothing to do, memory. Without the bench window, which technicians do not have.

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kIdleTime = std::chrono::seconds(10);
constexpr double kFirstPaintMs = 250;
constexpr double kIdleShare = 0.005;
constexpr double kMemoryMb = 60;

class FirstPaint final : public QObject {
  public:
    explicit FirstPaint(Clock::time_point start) : start_(start) { qApp->installEventFilter(this); }
    bool eventFilter(QObject* object, QEvent* event) override {
        if (ms < 0 && event->type() == QEvent::Paint && object->isWidgetType()) {
            ms = std::chrono::duration<double, std::milli>(Clock::now() - start_).count();
        }
        return false;
    }
    double ms = -1;

  private:
    Clock::time_point start_;
};

double processorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double residentMb() {
    std::ifstream in("/proc/self/statm");
    double total = 0;
    double resident = 0;
    in >> total >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

bool verdict(const char* what, double value, const char* unit, double limit) {
    std::cout << what << value << unit << " (goal below " << limit << ")\n";
    return value < limit;
}

}  // namespace

int main(int argc, char** argv) {
    const Clock::time_point start = Clock::now();
    const QApplication application(argc, argv);
    vantor::setUpApplication();
    FirstPaint paint(start);

    const vantor::CommandLine commandLine{.simulate = {{"Mars", "ME111"}}};
    const std::filesystem::path folder = vantor::programFolder(commandLine);
    vantor::World world(folder, commandLine);
    vantor::boxsim::SimulatedBox box(world.loop, 1);
    vantor::boxsim::SimulatedPort port(world.loop, box);
    box.plugValidator("Mars", "ME111");
    vantor::Platform platform = world.platform();
    vantor::Program program({platform.loop, port, platform.ports, platform.prompts, platform.sounds,
                             platform.calendar, platform.guard},
                            folder, [] { QCoreApplication::exit(); });
    double before = 0;
    bool good = true;
    QTimer ready;
    QObject::connect(&ready, &QTimer::timeout, [&] {
        if (!program.idle()) return;
        ready.stop();
        before = processorSeconds();
        QTimer::singleShot(kIdleTime, [&] {
            const double idle =
                (processorSeconds() - before) / std::chrono::duration<double>(kIdleTime).count();
            good &= verdict("first paint after ", paint.ms, " ms", kFirstPaintMs);
            good &= verdict("idle processor share ", idle, "", kIdleShare);
            good &= verdict("resident memory ", residentMb(), " MB", kMemoryMb);
            QCoreApplication::exit(good ? 0 : 1);
        });
    });
    ready.start(50);
    QTimer::singleShot(0, [&] { program.load(); });
    return QApplication::exec();
}
