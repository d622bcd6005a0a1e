#pragma once

#include "FakeLimitsDisplay.h"
#include "FakeMeasureDisplay.h"
#include "RecordedProgress.h"
#include "cc/CcFamily.h"
#include "link/Receiver.h"
#include "mars/MarsFamily.h"
#include "measure/MeasureFlows.h"
#include "nri/NriFamily.h"

namespace vantor::fuzz {

struct NewYearsEve final : Calendar {
    [[nodiscard]] Date today() const override { return {2026, 12, 31}; }
};

/// The program without its windows, wired as the program wires it.
struct Core {
    Core(EventLoop& loop, SerialPort& port, Prompts& prompts)
        : errors(state.messages, prompts),
          link(state, loop, port, prompts, errors),
          receiver(state, link, prompts, errors),
          families(state),
          check(state, link, families, prompts, errors),
          mars(state, link, prompts, errors, progress),
          cc(state, link, check, prompts, errors, progress, receiver.sinks),
          nri(state, link, check, prompts, errors, progress, calendar, receiver.sinks,
              {.open = [this] { return cc.memory().sentinel().openSentinelSession(); },
               .close = [this] { cc.memory().sentinel().closeSentinelSession(); }}),
          limits(state, link, families, prompts, errors, limitsDisplay),
          flows({state, link, families, prompts, errors, display, limits, limitsDisplay}) {
        families.add(mars);
        families.add(cc);
        families.add(nri);
        link.setByteHandler([this](std::uint8_t byte) { receiver.handleByte(byte); });
        MessageSinks& sinks = receiver.sinks;
        sinks.promLine = [this](std::string_view line) { mars.parsePromLine(line); };
        sinks.marsMeasurement = [this](std::string_view line) { flows.loadMeasurement(line); };
        sinks.logReading = [this] { flows.logReading(); };
        sinks.reading = [this] { flows.updateStats(0); };
        sinks.requestCoinData = [this] { cc.coinData().requestCcCoinData(); };
        limits.setTransfer([this] { flows.PROMxfr(); });
        link.startTicks();
    }

    void select(std::string_view maker, std::string_view model) {
        state.mech.manufacturer = maker;
        state.mech.mechType = model;
        applyMechType(state.mech, state.messages);
    }

    SessionState state;
    ErrorReporter errors;
    ProgrammerLink link;
    Receiver receiver;
    Families families;
    MechCheck check;
    test::RecordedProgress progress;
    NewYearsEve calendar;
    MarsFamily mars;
    CcFamily cc;
    NriFamily nri;
    test::FakeMeasureDisplay display;
    test::FakeLimitsDisplay limitsDisplay;
    LimitsReview limits;
    MeasureFlows flows;
};

}  // namespace vantor::fuzz
