#include "nri/NriComms.h"

#include <algorithm>
#include <cstdlib>

#include "catalogue/Text.h"

namespace vantor {

namespace {

constexpr std::string_view kTestModeOff = "C00";
constexpr std::string_view kIdentify = "I";
constexpr int kAnswerMs = 500;
constexpr int kAfterModeMs = 100;
constexpr int kBeforeIdentifyMs = 250;
constexpr int kCharacterMs = 50;
constexpr int kQuietMs = 500;
constexpr int kRecordMs = 50;  // the rest of a coin record
constexpr Micros kLongestChatter = std::chrono::seconds(3);
constexpr int kBetweenAttemptsMs = 500;
constexpr std::size_t kVersionCharacters = 2;
/// The last interface version that needs a change on the board.
constexpr std::string_view kOldInterface = "I1";

/// Restores the selected mech, whatever happens while another is listened to.
class HeardAs {
  public:
    HeardAs(MechSelection& mech, std::string_view maker, std::string_view model)
        : mech_(mech), saved_(mech) {
        mech_.manufacturer = maker;
        mech_.mechType = model;
    }
    ~HeardAs() { mech_ = std::move(saved_); }
    HeardAs(const HeardAs&) = delete;
    HeardAs& operator=(const HeardAs&) = delete;

  private:
    MechSelection& mech_;
    MechSelection saved_;
};

bool isAnswer(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
}

}  // namespace

// --- commands ------------------------------------------------------------------------------

void NriComms::clearReply() {
    BoxReplies& box = state_.box;
    box.nriAckFlag = false;
    box.nriQueryFlag = false;
    box.replyText.clear();
    box.linesComplete = false;
}

void NriComms::nriSend(std::string_view text) {
    errors_.attempt(334, [&] {
        if (!model().handshake || text.size() < 2) {
            link_.sendString(text);
            return;
        }
        link_.sendString(text.substr(0, 1));
        link_.waitFor(kAnswerMs, [this] { return state_.box.nriAckFlag || givenUp(); });
        link_.sendString(text.substr(1));
    });
}

bool NriComms::nriCommand(std::string_view text, int lines) {
    const BoxReplies& box = state_.box;
    clearReply();
    state_.box.linesExpected = std::abs(lines);
    if (!text.empty()) nriSend(text);
    const auto over = [&] { return box.linesComplete || givenUp(); };
    if (lines < 0) {
        link_.waitUntil(over);
    } else {
        link_.waitFor(kAnswerMs * lines, over);
    }
    return box.linesComplete;
}

void NriComms::awaitQuiet() {
    const BoxReplies& box = state_.box;
    const Micros end = link_.loop().now() + kLongestChatter;
    bool heard = true;
    while (heard && !givenUp() && link_.loop().now() < end) {
        state_.box.nriAckFlag = false;
        const std::size_t length = box.replyText.size();
        const int lines = box.linesExpected;
        heard = link_.waitFor(kQuietMs, [&] {
            return box.nriAckFlag || box.replyText.size() != length || box.linesExpected != lines ||
                   givenUp();
        });
    }
    link_.flushInput();
}

bool NriComms::nriWrite(std::string_view command, std::string_view data) {
    if (data.empty() || !state_.link.portOpen) return false;
    clearReply();
    state_.box.linesExpected = 1;
    if (!model().handshake) {
        link_.sendString(command);
        writeCharacters(data);
        return true;
    }
    nriSend(command);
    if (!link_.waitFor(kAnswerMs, state_.box.nriAckFlag)) return false;
    return writePairs(data);
}

bool NriComms::writePairs(std::string_view data) {
    const BoxReplies& box = state_.box;
    for (std::size_t at = 0; at + 1 < data.size(); at += 2) {
        clearReply();
        link_.sendString(data.substr(at, 2));
        link_.waitFor(kAnswerMs, [&] { return box.nriAckFlag || box.nriQueryFlag; });
        if (!box.nriAckFlag || box.nriQueryFlag) return false;
    }
    return true;
}

void NriComms::writeCharacters(std::string_view data) {
    for (const char c : data) {
        link_.sendString({&c, 1});
        link_.waitOut(kCharacterMs);
    }
}

// --- set-up --------------------------------------------------------------------------------

bool NriComms::identifyNriMech() {
    const BoxReplies& box = state_.box;
    const NriModel& wanted = model();
    if (wanted.waitsToIdentify) link_.waitFor(kBeforeIdentifyMs, [this] { return givenUp(); });
    constexpr int kAskedAtMost = 3;
    for (int asked = 1;; ++asked) {
        link_.flushInput();
        if (!nriCommand(kIdentify, 1)) {
            link_.waitFor(kAnswerMs, [&] { return box.linesComplete || givenUp(); });
        }
        // A G10 announces a coin that falls just now: before its answer stands the record, or what
        // the flush has left of it.
        const bool spoilt = box.linesComplete && !isAnswer(box.replyText);
        if (!spoilt || asked == kAskedAtMost || givenUp()) break;
        link_.waitFor(kRecordMs, [this] { return givenUp(); });
    }
    const bool known =
        box.linesComplete && !box.replyText.empty() &&
        std::ranges::find(wanted.answers, std::string_view(box.replyText)) != wanted.answers.end();
    if (known) state_.box.mechPresent = true;
    return known;
}

bool NriComms::openWith(std::string_view modeCommand) {
    const bool serial = check_.enterSerialMode(modeCommand);
    link_.waitTicks(kAfterModeMs);
    return serial && identifyNriMech();
}

bool NriComms::setupNriComms() {
    return setUp(1);
}

bool NriComms::setUp(int attempts) {
    probed_ = false;
    for (int i = 0; i < attempts && !givenUp(); ++i) {
        if (attempt()) return true;
        if (attempts == 1) break;
        link_.waitFor(kBetweenAttemptsMs, [this] { return givenUp(); });
        // Serial mode would stay what the second command made it, and the first never be tried.
        if (!model().secondModeCommand.empty() && !givenUp()) settle();
    }
    return false;
}

bool NriComms::attempt() {
    const NriModel& wanted = model();
    state_.box.nriG10Mode = false;
    link_.sendString(kTestModeOff);
    bool answered = openWith(wanted.modeCommand);
    if (!answered && !wanted.secondModeCommand.empty() && !givenUp()) {
        check_.leaveSerialMode();
        answered = openWith(wanted.secondModeCommand);
    }
    if (!answered && wanted.interfaceProbe && !givenUp()) {
        check_.leaveSerialMode();
        if (!probed_) probeInterface();
    }
    return answered;
}

void NriComms::probeInterface() {
    probed_ = true;
    if (!probe_.open || !probe_.close) return;
    {
        const HeardAs probed(state_.mech, kCoinControls, kInterfaceProbeModel);
        if (probe_.open()) {
            probe_.close();
        } else {
            settle();
        }
    }
    if (givenUp()) return;
    if (state_.box.sentinelVersion.substr(0, kVersionCharacters) > kOldInterface) return;
    prompts_.ask({.title = state_.msgText(322),
                  .text = state_.msgText(320) + std::string(kCrLf) + state_.msgText(321),
                  .icon = PromptIcon::information});
}

bool NriComms::settle() {
    return !state_.box.serialModeFlag || check_.leaveSerialMode();
}

}  // namespace vantor
