#include "boxsim/FaultInjector.h"

namespace vantor::boxsim {

namespace {

bool concernsBytes(Fault::Kind kind) {
    switch (kind) {
        case Fault::Kind::dropByte:
        case Fault::Kind::repeatByte:
        case Fault::Kind::flipBit:
        case Fault::Kind::insertByte:
        case Fault::Kind::delayByte:
        case Fault::Kind::stall:
        case Fault::Kind::cutLine:
        case Fault::Kind::unplug:
            return true;
        case Fault::Kind::previousReply:
        case Fault::Kind::lostAck:
        case Fault::Kind::stuckCell:
        case Fault::Kind::silentBox:
        case Fault::Kind::batteryLow:
        case Fault::Kind::mechSilent:
        case Fault::Kind::mechLate:
        case Fault::Kind::mechCut:
        case Fault::Kind::mechRefuses:
        case Fault::Kind::wrongSum:
        case Fault::Kind::noSession:
        case Fault::Kind::longReply:
        case Fault::Kind::lyingWrite:
        case Fault::Kind::powerLoss:
        case Fault::Kind::breakLost:
            return false;
    }
    return false;
}

}  // namespace

void FaultInjector::clear() {
    armed_.clear();
    fromBox_ = {};
    fromPc_ = {};
}

bool FaultInjector::strikes(Armed& armed) {
    if (armed.seen < armed.fault.after) {
        ++armed.seen;
        return false;
    }
    if (armed.fault.times >= 0 && armed.struck >= armed.fault.times) return false;
    ++armed.struck;
    return true;
}

bool FaultInjector::strikes(Fault::Kind kind) {
    return strikesWith(kind).has_value();
}

std::optional<int> FaultInjector::strikesWith(Fault::Kind kind) {
    std::optional<int> value;
    for (Armed& armed : armed_) {
        if (armed.fault.kind == kind && strikes(armed)) value = armed.fault.value;
    }
    return value;
}

std::optional<Micros> FaultInjector::delaysAnswer() {
    const auto value = strikesWith(Fault::Kind::mechLate);
    if (!value) return std::nullopt;
    return std::chrono::milliseconds(*value);
}

std::optional<std::size_t> FaultInjector::cutsAnswer() {
    const auto value = strikesWith(Fault::Kind::mechCut);
    if (!value) return std::nullopt;
    return static_cast<std::size_t>(*value);
}

std::optional<std::size_t> FaultInjector::lengthensAnswer() {
    const auto value = strikesWith(Fault::Kind::longReply);
    if (!value) return std::nullopt;
    return static_cast<std::size_t>(*value);
}

std::optional<Micros> FaultInjector::losesPower() {
    const auto value = strikesWith(Fault::Kind::powerLoss);
    if (!value) return std::nullopt;
    return std::chrono::milliseconds(*value);
}

int FaultInjector::struck() const {
    int count = 0;
    for (const Armed& armed : armed_) count += armed.struck;
    return count;
}

std::vector<int> FaultInjector::letThrough() const {
    std::vector<int> counts;
    for (const Armed& armed : armed_) counts.push_back(armed.seen);
    return counts;
}

bool FaultInjector::cellSticks(int cell) {
    bool struck = false;
    for (Armed& armed : armed_) {
        if (armed.fault.kind == Fault::Kind::stuckCell && armed.fault.value == cell &&
            strikes(armed)) {
            struck = true;
        }
    }
    return struck;
}

void FaultInjector::apply(const Fault& fault, Direction& direction, Verdict& verdict) {
    switch (fault.kind) {
        case Fault::Kind::dropByte:
            verdict.deliver = false;
            break;
        case Fault::Kind::repeatByte:
            verdict.again = true;
            break;
        case Fault::Kind::flipBit:
            verdict.byte = static_cast<std::uint8_t>(
                verdict.byte ^ (1U << (static_cast<unsigned>(fault.value) & 7U)));
            break;
        case Fault::Kind::insertByte:
            verdict.before =
                fault.value != 0 ? static_cast<std::uint8_t>(fault.value) : random_.byte();
            break;
        case Fault::Kind::delayByte:
            verdict.delay += std::chrono::milliseconds(fault.value);
            break;
        case Fault::Kind::stall:
            direction.stalled = true;
            break;
        case Fault::Kind::cutLine:
            direction.cutting = true;
            break;
        case Fault::Kind::unplug:
            verdict.unplug = true;
            break;
        default:
            break;
    }
}

Verdict FaultInjector::judge(Fault::Where where, std::uint8_t byte, bool endsLine) {
    Verdict verdict{.byte = byte};
    Direction& direction = where == Fault::Where::fromBox ? fromBox_ : fromPc_;
    for (Armed& armed : armed_) {
        if (armed.fault.where == where && concernsBytes(armed.fault.kind) && strikes(armed)) {
            apply(armed.fault, direction, verdict);
        }
    }
    if (direction.stalled || direction.cutting)
        verdict = {.byte = byte, .deliver = false, .unplug = verdict.unplug};
    if (endsLine) direction.cutting = false;
    return verdict;
}

}  // namespace vantor::boxsim
