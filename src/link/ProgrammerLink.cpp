#include "link/ProgrammerLink.h"

#include <algorithm>
#include <span>

#include "catalogue/Text.h"
#include "platform/ProgramEnded.h"

namespace vantor {

namespace {

constexpr int kTickMs = 20;
constexpr Micros kTick20 = std::chrono::milliseconds(20);
constexpr Micros kTick100 = std::chrono::milliseconds(100);
constexpr Micros kTick1000 = std::chrono::seconds(1);
constexpr int kReplyMs = 800;
constexpr int kWakeBreakMs = 100;
constexpr int kWakeEscapes = 25;
constexpr int kKeepAliveRepeatSeconds = 5;
constexpr std::string_view kEscape = "\x1B";
constexpr std::string_view kKeepAliveBytes = "\xFF\xFF";

class DepthScope {
  public:
    explicit DepthScope(int& depth) : depth_(depth) { ++depth_; }
    ~DepthScope() { --depth_; }
    DepthScope(const DepthScope&) = delete;
    DepthScope& operator=(const DepthScope&) = delete;

  private:
    int& depth_;
};

}  // namespace

/// Sets a counter for an inner wait and gives the outer one back what is left of it.
class ProgrammerLink::CounterScope {
  public:
    CounterScope(int& counter, int ms, const long long& ticks)
        : counter_(counter), outer_(counter), ticks_(ticks), ticksBefore_(ticks) {
        counter_ = ms;
    }
    ~CounterScope() {
        const long long left = outer_ - kTickMs * (ticks_ - ticksBefore_);
        counter_ = static_cast<int>(std::max(left, 0LL));
    }
    CounterScope(const CounterScope&) = delete;
    CounterScope& operator=(const CounterScope&) = delete;

  private:
    int& counter_;
    int outer_;
    const long long& ticks_;
    long long ticksBefore_;
};

ProgrammerLink::ProgrammerLink(SessionState& state, EventLoop& loop, SerialPort& port,
                               Prompts& prompts, ErrorReporter& errors)
    : state_(state),
      loop_(loop),
      port_(port),
      prompts_(prompts),
      errors_(errors),
      timer1_(loop),
      timer2_(loop),
      timer3_(loop) {
    port_.setReceiver([this](std::span<const std::uint8_t> bytes) { received(bytes); });
    port_.setFailureHandler([this](const std::string& reason) { portFailed(reason); });
}

ProgrammerLink::~ProgrammerLink() {
    loop_.cancel(idleDrainId_);
    loop_.cancel(closeId_);
    loop_.cancel(hangUpId_);
    port_.setReceiver({});
    port_.setFailureHandler({});
}

// --- ticks ---------------------------------------------------------------------------------

void ProgrammerLink::startTicks() {
    ticking_ = true;
    wakeTick20();
    timer2_.start(kTick100, [this] { errors_.attempt(833, [this] { tick100(); }); });
}

void ProgrammerLink::wakeTick20() {
    // Nobody can tell the tick from a sleeping one while nothing counts, but the processor can.
    if (!ticking_ || timer1_.running()) return;
    timer1_.start(kTick20, [this] { errors_.attempt(831, [this] { tick20(); }); });
}

void ProgrammerLink::setKeepAlive(bool on) {
    state_.link.keepAliveOn = on;
    if (!on) {
        timer3_.stop();
    } else if (!timer3_.running()) {
        timer3_.start(kTick1000, [this] { errors_.attempt(834, [this] { tick1000(); }); });
    }
}

void ProgrammerLink::tick20() {
    ++ticks_;
    LinkState& link = state_.link;
    link.replyCounter = std::max(link.replyCounter - kTickMs, 0);
    link.delayCounter = std::max(link.delayCounter - kTickMs, 0);
    if (link.replyCounter == 0 && link.delayCounter == 0 && waitDepth_ == 0) timer1_.stop();
}

void ProgrammerLink::tick100() {
    int& hold = state_.link.coinDisplayHold;
    if (hold <= 0) return;
    --hold;
    if (hold < 1 && coinDisplayReset_) coinDisplayReset_();
}

void ProgrammerLink::tick1000() {
    int& counter = state_.link.keepAliveCounter;
    if (counter >= 1) {
        --counter;
        return;
    }
    const MechModel* model = state_.mech.model();
    if (model != nullptr && model->keepAlive && state_.gather.coinsRemaining > 0) {
        sendString(kKeepAliveBytes);
        counter = kKeepAliveRepeatSeconds;
    }
}

// --- the port ------------------------------------------------------------------------------

bool ProgrammerLink::openPort(int portNumber) {
    LinkState& link = state_.link;
    if (link.portOpen) return true;
    link.portNumber = portNumber;
    queue_.clear();
    // An open port stays open: its lines may be what keeps a box awake.
    link.portOpen = port_.isOpen() || port_.open(portNumber).open;
    return link.portOpen;
}

void ProgrammerLink::startupPort() {
    if (!openPort(state_.link.portNumber)) {
        const auto text = [this](int id) { return state_.msgText(id); };
        prompts_.ask({.title = text(826),
                      .text = text(823) + std::string(kCrLf) + text(824) +
                              spacedNumber(state_.link.portNumber) + text(825),
                      .icon = PromptIcon::critical});
        endProgramNow();
    }
    sendBreak(kWakeBreakMs);
    sendEscapes(kWakeEscapes);
    resetReceiver();
}

void ProgrammerLink::resetBox() {
    sendBreak(kWakeBreakMs);
    sendEscapes(kWakeEscapes);
    sendAndWait("_");
    resetReceiver();
}

void ProgrammerLink::closePort() {
    port_.close();
    state_.link.portOpen = false;
    queue_.clear();
}

void ProgrammerLink::hangUp(std::function<void()> closed) {
    setKeepAlive(false);
    if (!state_.link.portOpen || !state_.box.serialModeFlag) {
        closePort();
        closed();
        return;
    }
    port_.setBreak(true);
    hangUpId_ = loop_.callAfter(std::chrono::milliseconds(kLeaveBreakMs),
                                [this, closed = std::move(closed)] {
                                    hangUpId_ = 0;
                                    port_.setBreak(false);
                                    sendEscapes(kLeaveEscapes);
                                    closePort();
                                    closed();
                                });
}

void ProgrammerLink::resetReceiver() {
    state_.box.serialModeFlag = false;
    state_.link.frameCount = 0;
    state_.link.lineBuffer.clear();
}

void ProgrammerLink::portFailed(const std::string& reason) {
    // Closing inside the port's own signal would pull it from under its feet.
    if (closeId_ != 0) return;
    closeId_ = loop_.callAfter(Micros{0}, [this, reason] {
        closeId_ = 0;
        if (!state_.link.portOpen) return;
        closePort();
        const ErrorReporter::Quiet quiet(errors_);
        errors_.report(206, reason, 0);
    });
}

// --- sending -------------------------------------------------------------------------------

bool ProgrammerLink::transmit(std::string_view bytes) {
    // A port that failed was told once; the rest of the flow runs into its time-outs quietly.
    if (!state_.link.portOpen) return false;
    return port_.write({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

void ProgrammerLink::sendString(std::string_view bytes) {
    errors_.attempt(206, [&] {
        if (!transmit(bytes) && state_.link.portOpen) portFailed("The port takes no data");
    });
}

void ProgrammerLink::sendAndWait(std::string_view bytes) {
    constexpr bool kGoOn = false;
    sendAndWait(bytes, kGoOn);
}

void ProgrammerLink::sendAndWait(std::string_view bytes, const bool& stop) {
    if (stop) return;
    state_.link.replyFlag = false;
    errors_.attempt(207, [&] {
        if (!transmit(bytes) && state_.link.portOpen) portFailed("The port takes no data");
    });
    waitFor(kReplyMs, [&] { return state_.link.replyFlag || stop; });
}

void ProgrammerLink::sendEscapes(int count) {
    for (int i = 0; i < count; ++i) sendString(kEscape);
}

void ProgrammerLink::sendBreak(int ms) {
    class BreakScope {
      public:
        explicit BreakScope(SerialPort& port) : port_(port) { port_.setBreak(true); }
        ~BreakScope() { port_.setBreak(false); }
        BreakScope(const BreakScope&) = delete;
        BreakScope& operator=(const BreakScope&) = delete;

      private:
        SerialPort& port_;
    };
    const BreakScope scope(port_);
    waitOut(ms);
}

void ProgrammerLink::flushInput() {
    port_.discardInput();
    queue_.clear();
}

// --- receiving -----------------------------------------------------------------------------

void ProgrammerLink::received(std::span<const std::uint8_t> bytes) {
    queue_.insert(queue_.end(), bytes.begin(), bytes.end());
    if (waitDepth_ == 0) armIdleDrain();
}

void ProgrammerLink::armIdleDrain() {
    if (idleDrainId_ != 0) return;
    idleDrainId_ = loop_.callAfter(Micros{0}, [this] {
        idleDrainId_ = 0;
        idleDrain();
    });
}

void ProgrammerLink::idleDrain() {
    // Outermost frame: nothing may leave into the event loop.
    try {
        drain();
    } catch (const ProgramEnded&) {
        if (ended_) ended_();
    } catch (const std::exception& error) {
        const ErrorReporter::Quiet quiet(errors_);
        errors_.report(809, error);
    }
}

void ProgrammerLink::drain() {
    // A decoder that waits is not done with its line: the next one follows it, not nested in it.
    if (holdingInput()) return;
    while (!queue_.empty()) {
        const std::uint8_t byte = queue_.front();
        queue_.pop_front();
        if (!handler_) continue;
        const ErrorReporter::Quiet quiet(errors_);
        errors_.attempt(809, [&] { handler_(byte); });
    }
}

// --- waiting -------------------------------------------------------------------------------

void ProgrammerLink::pumpOnce() {
    if (holdingInput()) {
        loop_.pumpHoldingInput();
    } else {
        loop_.pump();
    }
    drain();
    if (state_.link.ending) throw ProgramEnded{};
}

void ProgrammerLink::countDown(int& counter, int ms, const std::function<bool()>& done) {
    if (state_.link.ending) throw ProgramEnded{};
    const DepthScope depth(waitDepth_);
    const CounterScope scope(counter, ms, ticks_);
    wakeTick20();
    const Micros from = loop_.now();
    drain();
    while (counter > 0 && !done()) pumpOnce();
    if (spentWaits_ != nullptr && counter <= 0) spentWaits_->push_back({from, loop_.now()});
}

bool ProgrammerLink::waitFor(int ms, const std::function<bool()>& done) {
    countDown(state_.link.replyCounter, ms, done);
    return done();
}

void ProgrammerLink::waitOut(int ms) {
    countDown(state_.link.replyCounter, ms, [] { return false; });
}

void ProgrammerLink::waitUntil(const std::function<bool()>& done) {
    if (state_.link.ending) throw ProgramEnded{};
    const DepthScope depth(waitDepth_);
    drain();
    while (!done()) pumpOnce();
}

void ProgrammerLink::waitTicks(int ms) {
    constexpr int kStep = 10;
    const int rounded = std::max(ms / kStep * kStep, kStep);
    countDown(state_.link.delayCounter, rounded, [] { return false; });
}

void ProgrammerLink::waitTicksHoldingInput(int ms) {
    const DepthScope hold(holdDepth_);
    waitTicks(ms);
}

void ProgrammerLink::endProgramNow() {
    endProgram();
    throw ProgramEnded{};
}

}  // namespace vantor
