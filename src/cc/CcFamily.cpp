#include "cc/CcFamily.h"

#include <cstdlib>

namespace vantor {

namespace {

constexpr int kHighestLimit = 255;
constexpr std::uint32_t kGreen = 0x008000;
constexpr int kImageCells = 512;

}  // namespace

CcFamily::CcFamily(SessionState& state, ProgrammerLink& link, MechCheck& check, Prompts& prompts,
                   ErrorReporter& errors, ProgressDisplay& progress, const MessageSinks& sinks)
    : state_(state),
      link_(link),
      check_(check),
      errors_(errors),
      memory_(state, link, check, prompts, errors, progress),
      utilities_(state, link, prompts, errors, memory_),
      coinData_(state, link, errors, memory_, sinks) {}

FamilyLook CcFamily::look() const {
    return {.name = "Coin Controls", .colour = kGreen};
}

LimitRules CcFamily::limitRules() const {
    return {.capacity = kHighestLimit, .optionalParameter = memory_.model().optionalParameter};
}

CoinsetRules CcFamily::coinsetRules() const {
    return {};
}

// --- connection check ----------------------------------------------------------------------

void CcFamily::probeMech() {
    bool present = false;
    errors_.attempt(126, [&] {
        CcMemory::SessionGuard session(memory_);
        present = memory_.openEepromSession();
        if (present) {
            session.close();
        } else {
            session.dismiss();
            check_.leaveSerialMode();
        }
    });
    // Last: leaving serial mode may have asked the box, whose status line knows no CC mech.
    state_.box.mechPresent = present;
}

// --- measuring -----------------------------------------------------------------------------

void CcFamily::enableCoinData(int) {
    coinData_.enable();
}

void CcFamily::disableCoinData() {
    coinData_.disable();
}

// --- memory --------------------------------------------------------------------------------

bool CcFamily::programmeFromFile() {
    return utilities_.cloneFromFile();
}

void CcFamily::readOldMemory() {
    CcFlow flow(state_, link_, memory_);
    transfers_.reset();
    // Half a memory would pass for limits of 0: what was not read is not taken over.
    const bool whole = memory_.readMemory();
    if (whole) {
        for (int i = 0; i < kImageCells; ++i) state_.images.carryOver[i] = state_.images.old[i];
        takeChannelsOver();
    }
    flow.finish();
    if (whole) state_.images.oldMemoryRead = true;
}

void CcFamily::copyOldMemoryData() {
    if (!state_.oldImageWhole()) utilities_.readEeprom();
    // From the carry-over image: it is the mech as it was before anything was programmed.
    takeChannelsOver();
}

void CcFamily::takeChannelsOver() {
    for (int channel = 1; channel <= shape().channels; ++channel) {
        const int source = std::abs(state_.coinset.oldChannelSource[channel]);
        if (source == 0) continue;
        errors_.attempt(118, [&] {
            copyCcChannel(state_.images.carryOver, shape(), source, state_.limits.channelLimits,
                          channel);
        });
    }
}

void CcFamily::rebuildImage() {
    ImagesState& images = state_.images;
    const CoinsetData& coinset = state_.coinset;
    errors_.attempt(115, [&] {
        mapLimitsToCcImage(shape(), images.old, state_.limits.channelLimits, images.next);
    });
    if (memory_.model().outputMap && coinset.c120MapPresent) {
        errors_.attempt(
            157, [&] { mapC120Outputs(coinset.c120OutputMap, coinset.c120Jaguar, images.next); });
    }
    if (coinset.routingPresent && !state_.gather.wizardRun) {
        // The same coinset programmed again is no further transfer.
        const bool counted = transfers_ && *transfers_ == sentinelTransfers(images.old);
        errors_.attempt(116, [&] {
            applyCoinsetRouting(shape(), coinset.routing, images.old, images.next, counted);
        });
    }
    errors_.attempt(115, [&] { ccChecksum(shape(), memory_.soundImage(), images.next); });
}

bool CcFamily::programAndVerify() {
    // The new image is the old one with changes: without the old one it would erase the rest. And
    // a later read does not give back the limits that a failed one kept from being taken over.
    if (!state_.images.oldMemoryRead || !state_.oldImageWhole()) {
        memory_.tellIncomplete();
        return false;
    }
    // The utilities window works on the same image and may have left a file in it.
    rebuildImage();
    if (memory_.model().routing == CcRouting::sentinel) {
        transfers_ = sentinelTransfers(state_.images.next);
    }
    return memory_.programme();
}

}  // namespace vantor
