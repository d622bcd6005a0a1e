#include <algorithm>

#include "FuzzTarget.h"
#include "catalogue/Text.h"
#include "nri/NriText.h"
#include "nri/NriWrites.h"

// Blocks of any content, as an NRI mech might answer them: the first line names the model, each
// further line is a block. What is decoded can be shown, and written back in the form of the mech.

namespace {

using namespace vantor;
using fuzz::require;

void show(const NriShape& shape, const NriFields& fields) {
    MechSelection mech{std::string(kNri), std::string(shape.model.code), {}};
    const MessageTable messages;
    applyMechType(mech, messages);
    for (const NriView& view : nriViews(shape.model)) {
        const std::string page = nriText(view.page, shape, fields, mech.info.paramNames, messages);
        require(page.ends_with(kCrLf), "every line ends");
        require(static_cast<int>(splitLines(page).size()) > shape.channels,
                "every channel has its line");
    }
}

/// Whatever was decoded, a write has the length that the mech expects.
void write(const NriShape& shape, const NriFields& fields) {
    const Date today{2026, 12, 31};
    const auto plain = nriWrites(shape, {}, NriFields{}, today);
    NriNewData given;
    given.parameterString = fields.routeText[0] + fields.header;
    CoinsetData coinset;
    const auto writes =
        nriWrites(shape, fields.limits, newNriFields(shape, given, coinset, fields), today);
    require(writes.size() == plain.size(), "every model has its writes");
    for (std::size_t i = 0; i < writes.size(); ++i) {
        require(writes[i].command == plain[i].command, "in their order");
        // Headers and routes are the mech's own text; without one nothing is sent.
        if (plain[i].data.empty()) continue;
        require(writes[i].data.size() == plain[i].data.size(), "each of one length");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view rest = fuzz::textOf(data, size);
    const std::string_view name = fuzz::cut(rest, '\n');
    const auto models = nriModels();
    auto model = std::ranges::find(models, name, &NriModel::code);
    if (model == models.end()) model = models.begin() + fuzz::hashOf(name) % models.size();
    const NriShape shape = nriShape(model->code);
    NriBlockTexts blocks;
    for (std::string& block : blocks) block = fuzz::cut(rest, '\n');

    const NriFields fields = decodeNriBlocks(shape, blocks);
    for (const NriReadStep& step : nriReadSteps(shape)) {
        (void)nriBlockSound(shape, step, blocks[step.block]);
    }
    for (int channel = 1; channel <= shape.channels; ++channel) {
        const int output = fields.outputs[channel];
        require(nriOutput(nriMaskByte(output)) == output, "an output survives its writing");
        (void)nriReading(shape, blocks[channel], &fields.parameterMap[channel]);
    }
    show(shape, fields);
    write(shape, fields);
    return 0;
}
