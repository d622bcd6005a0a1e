#include <cstdint>
#include <cstdlib>

#include "Quiet.h"
#include "link/Receiver.h"
#include "platform/VirtualEventLoop.h"

// Any bytes in any mode, with any model: the first three bytes choose them, the rest arrives.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    if (size < 3) return 0;
    VirtualEventLoop loop;
    fuzz::QuietPort port;
    fuzz::QuietPrompts prompts;
    SessionState state;
    ErrorReporter errors(state.messages, prompts);
    ProgrammerLink link(state, loop, port, prompts, errors);
    Receiver receiver(state, link, prompts, errors);
    link.startTicks();
    link.openPort(1);

    const auto models = mechModels();
    const MechModel& model = models[data[0] % models.size()];
    state.mech.manufacturer = model.maker;
    state.mech.mechType = model.code;
    applyMechType(state.mech, state.messages);
    state.box.serialModeFlag = (data[1] & 1) != 0;
    state.box.nriG10Mode = (data[1] & 2) != 0;
    state.gather.gatherActive = (data[1] & 4) != 0;
    state.gather.coinsRemaining = data[2];
    state.valtest.tubeCount = data[1] >> 4;
    for (std::size_t i = 3; i < size; ++i) receiver.handleByte(data[i]);
    if (state.link.frameCount < 0 || state.link.frameCount > 10) std::abort();
    return 0;
}
