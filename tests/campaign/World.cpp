#include "World.h"

#include <QApplication>
#include <QWidget>
#include <algorithm>
#include <functional>

#include "OldProm.h"
#include "boxsim/SimulatedMech.h"
#include "catalogue/Text.h"
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
    plugMech();
    chooseLanguage();
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

void World::plugMech() {
    box.plugValidator(plan.model->maker, plan.model->code);
    if (!plan.ownWay) return;
    const OwnWay& way = *ownWayOf(*plan.model);
    box.mech()->setOption(way.option, way.value);
}

void World::chooseLanguage() {
    const std::string name(plan.language);
    writeFileWhole(file("config0000.txt"), "\" 1\",\"" + name + "\",\" 0\",\" 0\",\"\"\r\n");
    const auto language = std::ranges::find(kLanguages, plan.language, &Language::name);
    if (language->file.empty()) return;
    const std::filesystem::path data = std::filesystem::path(VANTOR_SOURCE_DIR) / "data";
    std::filesystem::copy_file(data / language->file, file(std::string(language->file)));
    prompts.english = [this](const std::string& text) { return toEnglish(text); };
    hand.english = [this](const std::string& text) { return toUtf8(toEnglish(fromUtf8(text))); };
}

/// Texts of messages become those that they translate, wherever they stand.
std::string World::toEnglish(std::string text) {
    if (texts_.empty() && program != nullptr && state().messages.languageTableLoaded) {
        constexpr std::size_t kShortest = 4;  // what is shorter stands in other words too
        for (const EnglishText& english : englishMessages()) {
            std::string foreign = state().msgText(english.id);
            if (foreign.size() < kShortest || foreign == english.text) continue;
            texts_.emplace_back(std::move(foreign), english.text);
        }
        std::ranges::stable_sort(texts_, std::greater{},
                                 [](const auto& pair) { return pair.first.size(); });
    }
    for (const auto& [foreign, english] : texts_) {
        for (auto at = text.find(foreign); at != std::string::npos;
             at = text.find(foreign, at + english.size())) {
            text.replace(at, foreign.size(), english);
        }
    }
    return text;
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
