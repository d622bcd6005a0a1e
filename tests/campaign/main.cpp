#include <unistd.h>

#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include "Runner.h"
#include "app/World.h"

namespace {

constexpr const char* kUsage =
    "vantor-campaign [--sessions N] [--seed FIRST] [--processes N]\n"
    "vantor-campaign --only SEED [--verbose]\n";

/// The offscreen platform says of every window what it cannot do, and sessions that a technician
/// has spoilt on purpose are no news either.
void quietly(QtMsgType, const QMessageLogContext&, const QString&) {}

void makeApplication() {
    static int count = 1;
    static char name[] = "vantor-campaign";
    static char* arguments[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // File dialogs remember the folders of earlier sessions; no seed knows of those.
    qputenv("XDG_CONFIG_HOME", "/nonexistent");
    qInstallMessageHandler(quietly);
    // Never destroyed: a worker leaves without unwinding.
    static auto* application = new QApplication(count, arguments);
    (void)application;
    vantor::setUpApplication();
}

std::optional<std::uint64_t> number(const char* text) {
    char* end = nullptr;
    const std::uint64_t value = std::strtoull(text, &end, 10);
    if (end == text || *end != '\0') return std::nullopt;
    return value;
}

}  // namespace

int main(int argc, char** argv) {
    vantor::campaign::Order order;
    order.processes = static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN));
    std::optional<std::uint64_t> only;
    bool verbose = false;
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i];
        if (option == "--verbose") {
            verbose = true;
            continue;
        }
        const auto value = i + 1 < argc ? number(argv[++i]) : std::nullopt;
        if (value && option == "--sessions") {
            order.sessions = static_cast<int>(*value);
        } else if (value && option == "--seed") {
            order.first = *value;
        } else if (value && option == "--processes" && *value > 0) {
            order.processes = static_cast<int>(*value);
        } else if (value && option == "--only") {
            only = value;
        } else {
            std::fputs(kUsage, stderr);
            return 2;
        }
    }
    int violations = 0;
    if (only) {
        makeApplication();
        violations = vantor::campaign::runOne(*only, verbose);
        std::fflush(nullptr);
        _exit(violations > 0 ? 1 : 0);
    }
    violations = vantor::campaign::runCampaign(order, makeApplication);
    return violations > 0 ? 1 : 0;
}
