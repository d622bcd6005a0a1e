#include "boxsim/SimulatedBox.h"

#include <deque>
#include <map>
#include <optional>
#include <utility>

#include "boxsim/Attention.h"
#include "boxsim/BoxCommands.h"
#include "boxsim/CommandParser.h"
#include "boxsim/FaultInjector.h"
#include "boxsim/Line.h"
#include "boxsim/Outbox.h"
#include "boxsim/PromSocket.h"
#include "boxsim/Random.h"
#include "boxsim/SimulatedMech.h"
#include "boxsim/Wire.h"

namespace vantor::boxsim {

namespace {

/// A transcript longer than this (a simulator that runs for days) loses its older half.
constexpr std::size_t kLongestTranscript = 1'000'000;
/// Coins and faults draw from seeds of their own, so that a fault does not change the coins.
constexpr std::uint64_t kFaultSeed = 0x9E37'79B9'7F4A'7C15;

}  // namespace

struct SimulatedBox::Impl final : MechLine {
    Impl(EventLoop& eventLoop, std::uint64_t seed);
    ~Impl() override;
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    // What the mech sees.
    void reply(std::span<const std::uint8_t> bytes, Micros mechTime) override;
    [[nodiscard]] EventLoop& loop() override { return loop_; }
    [[nodiscard]] FaultInjector& faults() override { return faults_; }

    // From the PC, in the order of arrival; while the box works on a command the rest waits.
    struct Arrival {
        std::uint8_t byte = 0;
        std::optional<Micros> breakLength{};
    };
    void arrived(const Arrival& arrival);
    void work();
    void handleByte(std::uint8_t byte);
    void handleBreak(Micros length);
    void execute(const std::string& command);
    void toCommandMode(bool sayAlways);

    void dropOne(const std::string& coin);
    void dropSome(int number, const std::string& coin, int count, Micros every, Micros first);
    void coinPassed(const CoinReading& reading);
    [[nodiscard]] std::vector<std::string> testLines(const CoinReading& reading) const;
    void record(bool fromBox, std::uint8_t byte);
    void unplug(const std::string& reason);
    [[nodiscard]] Micros spend(Micros time);

    EventLoop& loop_;
    FaultInjector faults_;
    Random coinRandom;
    PromSocket socket;
    BoxCommands commands;
    CommandParser parser;
    AttentionDetector attention;
    Line pcLine;
    Line boxLine;
    Outbox outbox;

    Output output;
    Unplugged unplugged;
    bool connected = true;
    bool silent = false;
    bool readyAtBreakEnd = false;
    bool batteryWarningDue = false;

    std::unique_ptr<SimulatedMech> mech;
    std::unique_ptr<SimulatedMech> aside;  // pulled, with what it has in its memory
    std::string model;                     // of the last validator, plugged in or not
    bool serialMode = false;
    std::string serialCommand;

    std::deque<Arrival> waiting;
    Micros busyUntil{0};
    EventLoop::TimerId workTimer = 0;
    std::optional<Micros> breakBegan;  // when the line went low
    Micros breakCalled{0};
    std::map<int, EventLoop::TimerId> dropTimers;
    int lastDrop = 0;

    std::vector<WireByte> transcript;
    Micros ownTime{0};
    int unknownBytes = 0;
};

SimulatedBox::Impl::Impl(EventLoop& eventLoop, std::uint64_t seed)
    : loop_(eventLoop),
      faults_(seed ^ kFaultSeed),
      coinRandom(seed),
      commands(socket, faults_),
      pcLine(
          eventLoop,
          [this](std::uint8_t byte, bool endsLine) {
              record(false, byte);
              return faults_.judge(Fault::Where::fromPc, byte, endsLine);
          },
          [this](std::uint8_t byte) { arrived({.byte = byte}); }),
      boxLine(
          eventLoop,
          [this](std::uint8_t byte, bool endsLine) {
              return faults_.judge(Fault::Where::fromBox, byte, endsLine);
          },
          [this](std::uint8_t byte) {
              if (!connected) return;
              record(true, byte);
              if (output) output(byte);
          }),
      outbox(boxLine, faults_) {
    pcLine.onBreakEnd([this](Micros length) { arrived({.breakLength = length}); });
    const auto pulled = [this] { unplug("The device was removed"); };
    pcLine.onUnplug(pulled);
    boxLine.onUnplug(pulled);
}

SimulatedBox::Impl::~Impl() {
    if (workTimer != 0) loop_.cancel(workTimer);
    for (const auto& [number, timer] : dropTimers) loop_.cancel(timer);
}

void SimulatedBox::Impl::record(bool fromBox, std::uint8_t byte) {
    if (transcript.size() >= kLongestTranscript) {
        transcript.erase(transcript.begin(), transcript.begin() + kLongestTranscript / 2);
    }
    transcript.push_back({.at = loop_.now(), .fromBox = fromBox, .byte = byte});
}

/// Adds the box's own time; the result is when it is over.
Micros SimulatedBox::Impl::spend(Micros time) {
    ownTime += time;
    return loop_.now() + time;
}

void SimulatedBox::Impl::reply(std::span<const std::uint8_t> bytes, Micros mechTime) {
    if (serialMode && !silent) outbox.reply(bytes, spend(mechTime));
}

void SimulatedBox::Impl::arrived(const Arrival& arrival) {
    waiting.push_back(arrival);
    if (workTimer == 0) work();
}

void SimulatedBox::Impl::work() {
    while (!waiting.empty()) {
        if (busyUntil > loop_.now()) {
            workTimer = loop_.callAfter(busyUntil - loop_.now(), [this] {
                workTimer = 0;
                work();
            });
            return;
        }
        const Arrival arrival = waiting.front();
        waiting.pop_front();
        if (silent) continue;
        if (arrival.breakLength) {
            handleBreak(*arrival.breakLength);
        } else {
            handleByte(arrival.byte);
        }
    }
}

void SimulatedBox::Impl::handleBreak(Micros length) {
    if (faults_.losesBreak()) return;
    parser.reset();
    commands.reset();
    if (readyAtBreakEnd && length >= kLongBreak) {
        toCommandMode(true);
    } else {
        attention.breakEnded(length);
    }
}

void SimulatedBox::Impl::handleByte(std::uint8_t byte) {
    const bool forTheBox = attention.waiting() && byte == kEscape;
    const Attention called = attention.take(byte);
    if (called != Attention::none) {
        toCommandMode(called == Attention::leave);
        return;
    }
    if (serialMode) {
        if (mech && !forTheBox) mech->fromPc(byte);
        return;
    }
    if (byte == kEscape) {
        parser.reset();
        commands.reset();
        return;
    }
    if (const auto command = parser.take(byte)) execute(*command);
}

void SimulatedBox::Impl::execute(const std::string& command) {
    if (faults_.silences()) return;
    const Outcome outcome = commands.run(command, mech.get());
    if (!outcome.known) {
        unknownBytes += static_cast<int>(command.size());
        return;
    }
    if (mech) mech->commandSeen(command);
    if (outcome.ownTime > Micros{0}) busyUntil = spend(outcome.ownTime);
    if (!outcome.lines.empty()) outbox.answer(outcome.lines, busyUntil);
    if (outcome.entersSerialMode) {
        serialMode = true;
        serialCommand = command;
        if (mech) mech->serialOpened(command);
    }
}

void SimulatedBox::Impl::toCommandMode(bool sayAlways) {
    const bool wasSerial = std::exchange(serialMode, false);
    if (wasSerial && mech) mech->serialClosed();
    parser.reset();
    commands.reset();
    if (!wasSerial && !sayAlways) return;
    busyUntil = spend(kCommandTime);
    const std::array ready = {std::string("*R")};
    outbox.answer(ready, busyUntil);
    if (std::exchange(batteryWarningDue, false)) outbox.announce("B", busyUntil);
}

void SimulatedBox::Impl::coinPassed(const CoinReading& reading) {
    if (!mech || silent) return;
    if (serialMode) {
        mech->coinInSerialMode(reading);
        return;
    }
    if (!commands.coinDataOn()) return;
    const auto lines = commands.testing() ? testLines(reading) : mech->coinLines(reading);
    if (lines.empty()) return;
    const Micros measured = spend(kCoinTime);
    for (const std::string& line : lines) outbox.announce(line, measured);
}

std::vector<std::string> SimulatedBox::Impl::testLines(const CoinReading& reading) const {
    const auto channel = mech->channelFor(reading, socket.cells());
    if (!channel) return {"V R"};
    if (commands.codedOutputs()) {
        return {std::string("V X") + hexDigit(*channel >> 4) + hexDigit(*channel)};
    }
    // One by one the outputs are nine at most.
    constexpr int kOutputs = 9;
    if (*channel >= kOutputs) return {};
    return {std::string("V ") + mech->coinLetter(*channel)};
}

void SimulatedBox::Impl::dropOne(const std::string& coin) {
    if (!mech) return;
    if (const auto reading = mech->draw(coin, coinRandom)) coinPassed(*reading);
}

void SimulatedBox::Impl::dropSome(int number, const std::string& coin, int count, Micros every,
                                  Micros first) {
    dropTimers[number] = loop_.callAfter(first, [this, number, coin, count, every] {
        dropTimers.erase(number);
        dropOne(coin);
        if (count > 1) dropSome(number, coin, count - 1, every, every);
    });
}

void SimulatedBox::Impl::unplug(const std::string& reason) {
    if (!std::exchange(connected, false)) return;
    pcLine.clear();
    boxLine.clear();
    breakBegan.reset();
    if (unplugged) unplugged(reason);
}

SimulatedBox::SimulatedBox(EventLoop& loop, std::uint64_t seed)
    : impl_(std::make_unique<Impl>(loop, seed)) {}

SimulatedBox::~SimulatedBox() = default;

void SimulatedBox::fromPc(std::span<const std::uint8_t> bytes) {
    // A line held in break carries no bytes.
    if (!impl_->connected || impl_->breakBegan) return;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        impl_->pcLine.put(bytes[i], impl_->loop_.now(), i + 1 == bytes.size());
    }
}

void SimulatedBox::setBreak(bool on) {
    if (!impl_->connected) return;
    if (on) {
        if (impl_->breakBegan) return;
        impl_->breakBegan = impl_->pcLine.freeAt();
        impl_->breakCalled = impl_->loop_.now();
        return;
    }
    if (!impl_->breakBegan) return;
    // A real port lets what was written leave before it begins the break, and whoever asked waits
    // for that; here the caller does not wait, so the break is moved as a whole.
    const Micros length = impl_->loop_.now() - impl_->breakCalled;
    impl_->pcLine.putBreak(*std::exchange(impl_->breakBegan, std::nullopt) + length, length);
}

void SimulatedBox::setOutput(Output output, Unplugged unplugged) {
    impl_->output = std::move(output);
    impl_->unplugged = std::move(unplugged);
}

Micros SimulatedBox::lineFreeAt() const {
    return impl_->pcLine.freeAt();
}

bool SimulatedBox::pluggedIn() const {
    return impl_->connected;
}

bool SimulatedBox::plugValidator(std::string_view maker, std::string_view model) {
    auto mech = makeMech(maker, model, *impl_);
    if (!mech) return false;
    impl_->mech = std::move(mech);
    impl_->aside.reset();
    impl_->model = model;
    if (impl_->serialMode) impl_->mech->serialOpened(impl_->serialCommand);
    return true;
}

bool SimulatedBox::replugValidator() {
    if (!impl_->aside) return impl_->mech != nullptr;
    impl_->mech = std::move(impl_->aside);
    if (impl_->serialMode) impl_->mech->serialOpened(impl_->serialCommand);
    return true;
}

void SimulatedBox::unplugValidator() {
    if (!impl_->mech) return;
    if (impl_->serialMode) impl_->mech->serialClosed();
    impl_->aside = std::move(impl_->mech);
}

std::string SimulatedBox::validator() const {
    return impl_->mech ? impl_->model : std::string();
}

SimulatedMech* SimulatedBox::mech() {
    return impl_->mech.get();
}

void SimulatedBox::insertProm(PromKind kind, int words, std::span<const std::uint8_t> contents) {
    impl_->socket.insert(kind, words, contents);
}

PromKind SimulatedBox::promKind() const {
    return impl_->socket.kind();
}

std::span<const std::uint8_t> SimulatedBox::promCells() const {
    return impl_->socket.cells();
}

void SimulatedBox::setSwitch(int number, bool on) {
    impl_->socket.setSwitch(number, on);
}

bool SimulatedBox::switchOn(int number) const {
    return impl_->socket.switchOn(number);
}

std::set<int> SimulatedBox::promChangedSinceRead() const {
    return impl_->socket.changedSinceRead();
}

std::set<int> SimulatedBox::mechChangedSinceRead() const {
    return impl_->mech ? impl_->mech->changedSinceRead() : std::set<int>();
}

std::vector<std::string> SimulatedBox::coins() const {
    return impl_->mech ? impl_->mech->coins() : std::vector<std::string>();
}

bool SimulatedBox::drop(std::string_view coin, int count, int everyMs) {
    // Asked of a generator of its own, so that the question costs the coins no draw.
    Random unused(0);
    if (!impl_->mech || !impl_->mech->draw(coin, unused)) return false;
    if (count > 0) {
        impl_->dropSome(++impl_->lastDrop, std::string(coin), count,
                        std::chrono::milliseconds(everyMs), Micros{0});
    }
    return true;
}

void SimulatedBox::dropRaw(std::span<const int> values) {
    impl_->coinPassed(CoinReading(values.begin(), values.end()));
}

void SimulatedBox::dropRaw(int v1, int v2, int v3) {
    dropRaw(std::array{v1, v2, v3});
}

bool SimulatedBox::reportTestEvent(std::string_view event) {
    if (!impl_->mech || impl_->serialMode || !impl_->commands.testing()) return false;
    if (!impl_->silent) {
        impl_->outbox.announce("V " + std::string(event), impl_->spend(kCoinTime));
    }
    return true;
}

void SimulatedBox::setSilent(bool silent) {
    impl_->silent = silent;
    if (silent) impl_->boxLine.clear();
}

void SimulatedBox::batteryLow() {
    if (impl_->silent) return;
    if (impl_->serialMode) {
        impl_->batteryWarningDue = true;
    } else {
        impl_->outbox.announce("B", impl_->loop_.now());
    }
}

void SimulatedBox::setVersion(std::string_view version) {
    impl_->commands.setVersion(version);
}

void SimulatedBox::setBinaryOutput(bool offered) {
    impl_->commands.setBinaryOutput(offered);
}

void SimulatedBox::setLineFeeds(bool on) {
    impl_->outbox.setLineFeeds(on);
}

void SimulatedBox::setReadyAtBreakEnd(bool on) {
    impl_->readyAtBreakEnd = on;
}

void SimulatedBox::setEscapesAloneAsBreak(bool on) {
    impl_->attention.setEscapesAlone(on);
}

void SimulatedBox::addFault(const Fault& fault) {
    impl_->faults_.add(fault);
}

void SimulatedBox::clearFaults() {
    impl_->faults_.clear();
}

int SimulatedBox::faultsStruck() const {
    return impl_->faults_.struck();
}

std::vector<int> SimulatedBox::faultsLetThrough() const {
    return impl_->faults_.letThrough();
}

void SimulatedBox::unplug() {
    impl_->unplug("The device was removed");
}

void SimulatedBox::replug() {
    impl_->connected = true;
}

bool SimulatedBox::inSerialMode() const {
    return impl_->serialMode;
}

bool SimulatedBox::coinDataOn() const {
    return impl_->commands.coinDataOn();
}

bool SimulatedBox::testing() const {
    return impl_->commands.testing();
}

int SimulatedBox::unknownBytes() const {
    return impl_->unknownBytes;
}

const std::vector<WireByte>& SimulatedBox::transcript() const {
    return impl_->transcript;
}

void SimulatedBox::clearTranscript() {
    impl_->transcript.clear();
    impl_->ownTime = Micros{0};
}

std::string SimulatedBox::sentByPc() const {
    std::string sent;
    for (const WireByte& wire : impl_->transcript) {
        if (!wire.fromBox) sent += static_cast<char>(wire.byte);
    }
    return sent;
}

Micros SimulatedBox::ownTime() const {
    return impl_->ownTime;
}

}  // namespace vantor::boxsim
