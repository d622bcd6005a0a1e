#include "FuzzTarget.h"
#include "Technician.h"
#include "measure/CoinsetFile.h"
#include "platform/Files.h"

// A coinset file of any content, run to its end with simulated coins, then programmed. What stands
// behind a 0 byte are the technician's moods.

namespace {

using namespace vantor;
using fuzz::require;

/// The mech that the file is for; an ME111 when there is no such mech.
const MechModel& wantedModel(std::string_view text) {
    const std::string content = fromFileBytes(text);
    const auto lines = splitLines(content);
    const CoinsetHeader header = parseCoinsetHeader(lines.empty() ? "" : lines.front());
    const auto listed = listedModels(header.maker);
    const bool known = std::ranges::find(listed, header.mechType) != listed.end();
    return *(known ? findModel(header.maker, header.mechType) : findModel(kMars, "ME111"));
}

void checkLimits(const fuzz::Core& core) {
    const int capacity = core.families.selected().limitRules().capacity;
    for (const auto& columns : core.state.limits.channelLimits) {
        for (const int limit : columns) {
            require(limit >= 0 && limit <= capacity, "a limit fits the mech");
        }
    }
    const int highest = core.state.mech.manufacturer == kMars ? 15 : 65535;
    for (const int cell : core.state.images.next) {
        require(cell >= 0 && cell <= highest, "the image fits the memory");
    }
}

/// What the box says that it holds is what the program says that it wrote.
void checkProm(const fuzz::Bench& bench) {
    const SessionState& state = bench.core.state;
    const auto cells = bench.box.promCells();
    for (int segment = 0; segment < kMarsSegments; ++segment) {
        if (!state.prom.segmentSelected[segment]) continue;
        for (int cell = 128 * segment; cell < 128 * (segment + 1); ++cell) {
            if (static_cast<std::size_t>(cell) >= cells.size()) break;
            require(cells[static_cast<std::size_t>(cell)] == state.images.next[cell],
                    "the PROM holds the new image");
        }
    }
}

void checkEeprom(fuzz::Bench& bench) {
    const SessionState& state = bench.core.state;
    const int verified = ccModel(state.mech.mechType).verifiedWords;
    for (const auto& cell : bench.box.mech()->memory()) {
        if (cell.number >= verified) continue;
        require(lenientInteger("&h" + cell.content) == state.images.next[cell.number],
                "the EEPROM holds the new image");
    }
}

void checkNri(fuzz::Bench& bench) {
    require(bench.core.nri.readMemory(), "the mech can be read after programming");
    const SessionState& state = bench.core.state;
    for (int channel = 1; channel <= state.mech.info.channelCount; ++channel) {
        for (int column = 1; column <= 2 * state.n(); ++column) {
            require(state.nri.old.limits[channel][column] ==
                        state.limits.channelLimits[channel][column],
                    "the mech holds the limits");
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view moods = fuzz::textOf(data, size);
    const std::string_view text = fuzz::cut(moods, '\0');
    const std::filesystem::path file = fuzz::scratchFolder() / "fuzz.cst";
    writeFileWhole(file, text);
    const MechModel& model = wantedModel(text);

    fuzz::Bench bench(model.maker, model.code, moods, file);
    fuzz::Core& core = bench.core;
    core.flows.CoinInitialise(0);
    core.display.log = moods.size() % 2 == 1;
    core.flows.runCoinsetFile();
    bench.requireIdle();
    checkLimits(core);
    if (!core.limitsDisplay.visible) return 0;
    const bool programmed = core.families.selected().programAndVerify();
    bench.requireIdle();
    if (!programmed) return 0;
    if (model.maker == kMars) checkProm(bench);
    if (model.maker == kCoinControls) checkEeprom(bench);
    if (model.maker == kNri) checkNri(bench);
    return 0;
}
