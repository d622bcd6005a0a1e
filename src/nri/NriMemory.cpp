#include "nri/NriMemory.h"

#include <algorithm>

#include "catalogue/Text.h"
#include "nri/NriDataFile.h"
#include "platform/Files.h"

namespace vantor {

namespace {

constexpr int kReadAttempts = 4;
constexpr int kPlainPauseMs = 200;

}  // namespace

void NriMemory::tell(int title, const std::string& text, PromptIcon icon) {
    prompts_.ask({.title = state_.msgText(title), .text = text, .icon = icon});
}

void NriMemory::tellSetupFailure(int first) {
    const std::string line(kCrLf);
    tell(102, state_.msgText(first) + line + state_.msgText(first + 1) + line +
                  state_.msgText(first + 2));
}

void NriMemory::tellNotProgrammed() {
    tell(102, state_.msgText(142));
}

// --- reading -------------------------------------------------------------------------------

bool NriMemory::readNriMemory() {
    const std::string before = state_.images.oldModel;
    state_.noteOldImage(false);
    bool answered = false;
    bool finished = false;
    std::string missing;
    errors_.attempt(136, [&] {
        const ProgressScope window(progress_, state_.msgText(131), state_.msgText(132), false);
        finished = errors_.attempt(136, [&] {
            answered = comms_.setUp(kReadAttempts);
            if (answered) missing = readBlocks();
        });
        if (answered && !state_.gather.abortFlag) errors_.attempt(136, [this] { writeDump(); });
        comms_.settle();
    });
    if (!answered && before != state_.images.oldModel) {
        // Another mech's memory must not be shown, or saved, as this one's.
        state_.nri.blocks = {};
        state_.nri.old = {};
    }
    if (state_.gather.abortFlag) return false;
    if (!answered) {
        tellSetupFailure(133);
    } else if (!missing.empty()) {
        tell(102, state_.msgText(136) + missing);
    }
    state_.noteOldImage(answered && finished && missing.empty());
    return state_.oldImageWhole();
}

/// The commands that brought no usable answer.
std::string NriMemory::readBlocks() {
    const NriShape of = shape();
    const bool plain = !of.model.handshake;
    const bool& cancelled = state_.gather.abortFlag;
    std::string missing;
    int value = 0;
    for (const NriReadStep& step : nriReadSteps(of)) {
        if (cancelled) break;
        const bool answered = comms_.nriCommand(step.command, step.lines);
        const std::string& reply = state_.box.replyText;
        const auto from = static_cast<std::size_t>(step.from - 1);
        std::string text = from < reply.size() ? reply.substr(from) : std::string();
        // What follows a block that stands inside its answer is none of it.
        if (step.from > 1) text.resize(std::min(text.size(), static_cast<std::size_t>(step.least)));
        if (!answered || !nriBlockSound(of, step, text)) {
            missing += (missing.empty() ? "" : " ") + step.command;
        }
        state_.nri.blocks[step.block] = std::move(text);
        if (!answered) comms_.awaitQuiet();
        progress_.showProgress(std::min(++value, ProgressDisplay::kRange));
        if (plain) link_.waitFor(kPlainPauseMs, cancelled);
    }
    state_.nri.old = decodeNriBlocks(of, state_.nri.blocks);
    return missing;
}

void NriMemory::writeDump() {
    writeFileWhole(state_.app.folder / nriDumpName(state_.mech.mechType),
                   nriFileText(state_.nri.blocks));
}

// --- programming ---------------------------------------------------------------------------

bool NriMemory::send(const std::vector<NriWrite>& writes) {
    bool good = true;
    if (!shape().model.handshake) link_.waitOut(kPlainPauseMs);
    for (const NriWrite& write : writes) {
        if (!good && !write.always) continue;
        if (!comms_.nriWrite(write.command, write.data)) good = false;
        progress_.showProgress(write.progress);
        if (write.waitMs > 0) link_.waitOut(write.waitMs);
        good = good && !refusedPlainly();
    }
    return good;
}

/// A plain mech acknowledges nothing, but it may say that it did not understand, some time after
/// the end of what it was sent.
bool NriMemory::refusedPlainly() const {
    return !shape().model.handshake && state_.box.nriQueryFlag;
}

/// If the box behind which a plain mech is does not answer any more, who knows what has reached it.
bool NriMemory::vouchedFor(bool backInCommandMode) const {
    return shape().model.handshake || (backInCommandMode && !refusedPlainly());
}

bool NriMemory::programNriMemory() {
    if (!oldMemoryTaken()) {
        tellNotProgrammed();
        return false;
    }
    const auto writes =
        nriWrites(shape(), state_.limits.channelLimits, state_.nri.next, calendar_.today());
    // What cannot be written whole is known before the mech has lost anything.
    if (std::ranges::any_of(writes, [](const NriWrite& write) { return write.data.empty(); })) {
        tellNotProgrammed();
        return false;
    }
    bool answered = false;
    bool good = false;
    errors_.attempt(145, [&] {
        const ProgressScope window(progress_, state_.msgText(137), state_.msgText(138), false);
        errors_.attempt(145, [&] {
            answered = comms_.setupNriComms();
            good = answered && send(writes);
        });
        const bool back = comms_.settle();
        good = good && vouchedFor(back);
    });
    if (!answered) {
        tellSetupFailure(139);
    } else if (!good) {
        tellNotProgrammed();
    } else {
        tell(144, state_.msgText(143), PromptIcon::information);
    }
    return good;
}

bool NriMemory::programBlocks(const std::vector<NriWrite>& writes) {
    bool good = false;
    errors_.attempt(914, [&] {
        const ProgressScope window(progress_, state_.msgText(908), state_.msgText(909), false);
        link_.sendJ();
        good = comms_.setupNriComms() && send(writes);
    });
    errors_.attempt(914, [this] { link_.sendW(); });
    errors_.attempt(914, [&] {
        const bool back = comms_.settle();
        good = good && vouchedFor(back);
    });
    if (good) {
        tell(911, state_.msgText(910), PromptIcon::information);
    } else {
        tell(913, state_.msgText(912));
    }
    return good;
}

}  // namespace vantor
