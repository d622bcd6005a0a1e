#include "World.h"

#include <QApplication>
#include <QWidget>

#include "OldProm.h"
#include "link/ProgrammerLink.h"
#include "platform/Files.h"

namespace vantor::campaign {

namespace {

constexpr Micros kStartUp = std::chrono::seconds(30);
constexpr int kWords = 512;

}  // namespace

World::World(const Plan& of)
    : plan(of), folder(directory.path().toStdString()), box(loop, of.seed + 1) {
    loop.setCompanion([this] {
        QCoreApplication::processEvents();
        if (onTurn) onTurn();
    });
    box.plugValidator(plan.model->maker, plan.model->code);
    writeFileWhole(file("config0000.txt"), kConfig);
    hand.asked = [this] { return prompts.open > 0; };
    box.setLineFeeds(plan.lineFeeds);
    box.setReadyAtBreakEnd(plan.lateReady);
    hand.promWords = plan.oneK ? kWords / 2 : kWords;
    hand.oldProm = test::oldProm(plan.model->code == "ME181", hand.promWords);
    hand.wizardCoin = "20 Pell";
    hand.wizardSlug = "Plated Disc";
    hand.log = file("results.csv");
    hand.coinset = std::filesystem::path(VANTOR_SOURCE_DIR) / "data" / "CoinSets" / plan.coinset;
}

World::~World() {
    loop.setCompanion({});
}

bool World::start() {
    startedAgain = program != nullptr;
    program.reset();
    program = std::make_unique<Program>(
        Platform{loop, port, ports_, prompts, sounds_, calendar_, guard_}, folder, [] {});
    // Nobody looks; what would be painted is the toolkit's business.
    for (QWidget* window : QApplication::topLevelWidgets()) window->setUpdatesEnabled(false);
    // The box may still be busy with what the last program asked of it.
    RepeatingTimer again(loop);
    again.start(std::chrono::seconds(3), [] {
        const auto* retry = test::widget<QAbstractButton>("frmOpening.cmdRetry");
        if (retry != nullptr && retry->isVisible() && retry->isEnabled()) {
            test::click("frmOpening.cmdRetry");
        }
    });
    const EventLoop::TimerId watchdog =
        loop.callAfter(2 * kStartUp, [this] { program->link().endProgram(); });
    loop.callAfter(Micros{0}, [this] { program->load(); });
    const bool started =
        loop.runUntil([this] { return program->idle() || program->ended(); }, kStartUp) &&
        program->idle();
    loop.cancel(watchdog);
    return started;
}

}  // namespace vantor::campaign
