#include "Jobs.h"

#include <QComboBox>
#include <QLineEdit>
#include <array>
#include <utility>

#include "Dice.h"
#include "boxsim/SimulatedMech.h"
#include "platform/Files.h"

namespace vantor::campaign {

using std::chrono::milliseconds;

namespace {

struct MainButtons {
    std::string_view maker;
    const char* list;
    const char* program;
    const char* test;
    const char* memory;
};
constexpr std::array kMain = {
    MainButtons{kMars, "cmbMarsMech", "cmdMars", "cmdValtest", "cmdPROMutilities"},
    MainButtons{kCoinControls, "cmbCCmech", "cmdCCprog", "cmdCCValTest", "cmdCCprom"},
    MainButtons{kNri, "cmbNRImech", "cmdNRIprog", "cmdNRIvaltest", "cmdNRIprom"}};

const MainButtons& mainOf(std::string_view maker) {
    for (const MainButtons& row : kMain) {
        if (row.maker == maker) return row;
    }
    return kMain.front();
}

/// A question of its own window stands before it.
bool blocked(const QWidget* window) {
    for (const QWidget* other : QApplication::topLevelWidgets()) {
        if (!other->isVisible() || other->windowModality() == Qt::NonModal) continue;
        if (other != window && other->parentWidget() && other->parentWidget()->window() == window) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool pressable(const QWidget* control) {
    return control != nullptr && control->isVisible() && control->isEnabled() &&
           !blocked(control->window());
}

int stepsOf(JobKind job) {
    switch (job) {
        case JobKind::coinset:
        case JobKind::wizard:
        case JobKind::promCopy:
            return 3;
        default:
            return 2;
    }
}

bool Job::press(const std::string& name) {
    auto* button = test::widget<QAbstractButton>(name);
    if (!pressable(button)) return false;
    button->click();
    return true;
}

void Job::choose(const std::string& name, int row) {
    auto* list = test::widget<QComboBox>(name);
    if (!pressable(list) || row < 0 || row >= list->count()) return;
    list->setCurrentIndex(row);
    emit list->activated(row);
}

bool Job::saidSince(std::size_t from, const char* text) const {
    const auto& seen = world_.prompts.seen;
    return std::any_of(seen.begin() + static_cast<std::ptrdiff_t>(from), seen.end(),
                       [&](const std::string& box) { return box.find(text) != std::string::npos; });
}

std::string Job::utilities() const {
    if (world_.plan.is(kMars)) return "frmPROMdata.";
    return world_.plan.is(kCoinControls) ? "frmEEPROMdata." : "frmNRIdata.";
}

void Job::prepare() {
    const Plan& plan = world_.plan;
    const bool copies = plan.job == JobKind::promCopy;
    if (copies) {
        world_.hand.onGather = QMessageBox::No;
        world_.hand.measuredAnyway = "1 Dorin";
    }
    if (plan.job == JobKind::utilitiesRead && plan.is(kMars)) {
        world_.box.insertProm(boxsim::PromKind::e1, world_.hand.promWords, world_.hand.oldProm);
    }
    if (plan.job == JobKind::clone || plan.job == JobKind::fromFile) makeMemoryFile();
    if (plan.job == JobKind::clone) world_.hand.coinset.clear();
    if (plan.job == JobKind::utilitiesRead && !plan.is(kMars)) {
        if (plan.oldFile) {
            // Of another mech of the model.
            makeMemoryFile();
            world_.oldText = std::exchange(world_.fileText, {});
            writeFileWhole(world_.file("saved.txt"), world_.oldText);
        }
        world_.hand.memoryFile = world_.file("saved.txt");
    }
}

/// The memory of a mech like this one, a little different.
void Job::makeMemoryFile() {
    const Plan& plan = world_.plan;
    Dice dice(plan.detail);
    boxsim::SimulatedMech& mech = *world_.box.mech();
    const auto cells = mech.memory();
    for (const boxsim::MemoryCell& cell : cells) {
        std::string content = cell.content;
        if (content.empty() || !dice.chance(40)) continue;
        // The last character of a word, or of a block of digits, may be any digit.
        const char old = content.back();
        if ((old < '0' || old > '9') && !plan.is(kCoinControls)) continue;
        content.back() = static_cast<char>('0' + dice.between(0, 5));
        if (content.back() == old) content.back() = '6';
        mech.setMemory(cell.number, content);
    }
    world_.hand.memoryFile = world_.file("memory.txt");
    world_.fileCells = mech.memory();
    world_.fileText = mech.savedMemory();
    world_.plugMech();
}

bool Job::perform(int step) {
    const MainButtons& main = mainOf(world_.plan.model->maker);
    if (step == 0) {
        done_ = false;
        // A button that was pressed in passing may have saved something else there.
        if (!world_.fileText.empty()) writeFileWhole(world_.hand.memoryFile, world_.fileText);
    }
    switch (world_.plan.job) {
        case JobKind::coinset:
        case JobKind::promCopy:
            return step == 0 ? openMain(main.program) : step == 1 ? runCoinset() : program();
        case JobKind::wizard:
            return step == 0 ? openMain(main.program) : step == 1 ? runWizard() : program();
        case JobKind::clone:
            return step == 0 ? openMain(main.program) : runCoinset();
        case JobKind::validatorTest:
            return step == 0 ? openTest() : testCoins();
        case JobKind::utilitiesRead:
            return step == 0 ? openUtilities() : readAndSave();
        case JobKind::fromFile:
            return step == 0 ? openUtilities() : programFile();
        case JobKind::routing:
            return step == 0 ? openUtilities() : programRouting();
    }
    return false;
}

bool Job::openMain(const char* action) {
    const std::string list = std::string("frmMain.") + mainOf(world_.plan.model->maker).list;
    auto* models = test::widget<QComboBox>(list);
    // The page of the maker need not be in front for a list to be set.
    models->setCurrentIndex(models->findText(QString::fromLatin1(
        world_.plan.model->code.data(), static_cast<qsizetype>(world_.plan.model->code.size()))));
    auto* button = test::widget<QAbstractButton>(std::string("frmMain.") + action);
    const QWidget* window = test::widget("frmMain");
    if (!window->isVisible() || !button->isEnabled()) return false;
    button->click();
    return true;
}

bool Job::runCoinset() {
    const bool clone = world_.plan.job == JobKind::clone;
    if (!test::visible("frmCoinMeasure1")) return false;
    auto* log = test::widget<QAbstractButton>("frmCoinMeasure1.chkLog");
    if (pressable(log)) log->setChecked(world_.plan.log);
    auto* twice = test::widget<QAbstractButton>("frmCoinMeasure1.chkduplicate");
    if (clone && pressable(twice) && !twice->isChecked()) twice->click();
    const std::size_t from = world_.prompts.seen.size();
    if (!press("frmCoinMeasure1.cmdRunCoinset")) return false;
    if (clone) done_ = saidSince(from, kCcVerdict) || saidSince(from, kNriFileVerdict);
    return true;
}

bool Job::runWizard() {
    constexpr std::array kButtons = {"cmdEditLimits", "cmdAddReplace", "cmdSlugFix"};
    if (!test::visible("frmCoinMeasure1")) return false;
    if (world_.plan.is(kMars) &&
        !press(world_.plan.oneK ? "frmCoinMeasure1.opt1K" : "frmCoinMeasure1.opt2K"))
        return false;
    if (!press("frmCoinMeasure1.cmdSpecialUtilities")) return false;
    auto* log = test::widget<QAbstractButton>("frmCoinMeasure1.chkLog");
    if (pressable(log)) log->setChecked(world_.plan.log);
    auto* coins = test::widget<QComboBox>("frmCoinMeasure1.cmbCoin");
    if (coins->count() > 0) {
        choose("frmCoinMeasure1.cmbCoin",
               static_cast<int>(world_.plan.detail % static_cast<unsigned>(coins->count())));
    }
    auto* value = test::widget<QLineEdit>("frmCoinMeasure1.txtCoinValue");
    if (pressable(value)) value->setText(QStringLiteral("50"));
    return press(std::string("frmCoinMeasure1.") +
                 kButtons.at(static_cast<std::size_t>(world_.plan.wizard)));
}

bool Job::program() {
    if (!test::visible("frmPROM")) return false;
    if (world_.plan.bipolar && !press("frmPROM.optBipolarPROM")) return false;
    const std::size_t from = world_.prompts.seen.size();
    if (!press("frmPROM.cmdProgPROM")) return false;
    done_ = saidSince(from, kMarsVerdict) || saidSince(from, kCcVerdict) ||
            saidSince(from, kNriVerdict);
    return true;
}

bool Job::openTest() {
    return openMain(mainOf(world_.plan.model->maker).test);
}

bool Job::testCoins() {
    if (!test::visible("frmValtest")) return false;
    constexpr std::array kCoins = {"20 Pell", "1 Dorin", "Steel Washer", "20 Pell"};
    for (const char* coin : kCoins) {
        world_.box.drop(coin);
        world_.loop.advance(milliseconds(600));
    }
    if (!test::visible("frmValtest")) return false;
    if (world_.onTested) world_.onTested(static_cast<int>(kCoins.size()));
    done_ = press("frmValtest.cmdClearCount") && press("frmValtest.cmdBack");
    return done_;
}

bool Job::openUtilities() {
    return openMain(mainOf(world_.plan.model->maker).memory);
}

bool Job::readAndSave() {
    const std::string window = utilities();
    if (!test::visible(window.substr(0, window.size() - 1))) return false;
    if (!press(window + "cmdReadPROM")) return false;
    const bool whole = world_.state().images.oldComplete;
    if (whole && world_.onRead) world_.onRead();
    for (int view = 1; view < test::widget<QComboBox>(window + "cmbDisplay")->count(); ++view) {
        choose(window + "cmbDisplay", view);
    }
    choose(window + "cmbDisplay", 0);
    done_ = whole && (world_.plan.is(kMars) || press(window + "cmdSave"));
    return true;
}

bool Job::programFile() {
    const std::size_t from = world_.prompts.seen.size();
    if (!press(utilities() + "cmdProgramme")) return false;
    done_ = saidSince(from, kCcVerdict) || saidSince(from, kNriFileVerdict);
    return true;
}

bool Job::programRouting() {
    constexpr int kOtherView = 2;
    choose("frmEEPROMdata.cmbDisplay", kOtherView);
    auto* path = test::widget<QLineEdit>("frmEEPROMdata.txtSort_0");
    if (pressable(path)) {
        const QChar old = path->text().isEmpty() ? QChar('A') : path->text().front();
        const auto other = static_cast<char16_t>('A' + world_.plan.detail % 4);
        path->setText(
            QString(old == QChar(other) ? QChar(other == u'D' ? u'A' : u'D') : QChar(other)));
    }
    const std::size_t from = world_.prompts.seen.size();
    if (!press("frmEEPROMdata.cmdRouting")) return false;
    done_ = saidSince(from, kCcVerdict);
    return true;
}

}  // namespace vantor::campaign
