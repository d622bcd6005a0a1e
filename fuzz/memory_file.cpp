#include "FuzzTarget.h"
#include "Technician.h"
#include "cc/EepromFile.h"
#include "cc/EepromText.h"
#include "nri/NriDataFile.h"
#include "platform/Files.h"

// A saved memory of any content: the first line names the model (a "!" behind it programs the
// simulated mech from the file), the rest is the file.

namespace {

using namespace vantor;
using fuzz::require;

const MechModel& modelNamed(std::string_view name) {
    std::vector<const MechModel*> all;
    for (const MechModel& model : mechModels()) {
        if (model.maker != kMars) all.push_back(&model);
    }
    for (const MechModel* model : all) {
        if (model->code == name) return *model;
    }
    return *all[fuzz::hashOf(name) % all.size()];
}

void eepromFile(const MechModel& model, std::string_view text) {
    const CcShape shape = ccShape(model.code);
    const EepromFile file = parseEepromFile(text, shape.words);
    require(file.given <= shape.words, "no word is given twice");
    for (const int word : file.image) require(word == cutToWord(word), "a word has 16 bits");
    const EepromFile again = parseEepromFile(eepromFileText(file.image, shape.words), shape.words);
    require(again.skipped == 0 && again.given == shape.words, "a written file is whole");
    for (int word = 0; word < shape.words; ++word) {
        require(again.image[word] == file.image[word], "what is written is what is read");
    }

    MechSelection mech{std::string(model.maker), std::string(model.code), {}};
    const MessageTable messages;
    applyMechType(mech, messages);
    const MessageTexts texts = [&](int number) { return messages.msgText(number); };
    (void)eepromWordsText(shape, file.image);
    (void)eepromLimitsText(shape, file.image, mech.info.paramNames, texts);
    (void)eepromOtherText(shape, file.image, texts);
    if (shape.model.routing != CcRouting::c435) return;
    MechImage next{};
    if (writeC435Settings(shape, c435Settings(file.image), file.image, next) == C435Fault::none) {
        require(c435Settings(next) == c435Settings(file.image), "settings survive their writing");
    }
}

void nriFile(const MechModel& model, std::string_view text) {
    const NriShape shape = nriShape(model.code);
    const NriDataFile file = parseNriFile(text);
    const NriDataFile again = parseNriFile(nriFileText(file.blocks));
    require(again.skipped == 0, "a written file is whole");
    const auto writes = nriFileWrites(shape, file.blocks);
    if (!writes) return;
    for (const NriWrite& write : *writes) {
        for (const char c : write.data) {
            const auto code = static_cast<unsigned char>(c);
            require((code >= 32 && code != 127) || code == '\r', "blocks are text");
        }
        const auto returns = std::ranges::count(write.data, '\r');
        require(returns == (shape.model.handshake  ? 0
                            : write.command == "D" ? 2
                                                   : 1),
                "a write ends where it should");
    }
}

void program(const MechModel& model, std::string_view bytes, std::string_view text) {
    const std::filesystem::path path = fuzz::scratchFolder() / "fuzz.txt";
    writeFileWhole(path, bytes);
    fuzz::Bench bench(model.maker, model.code, {}, path);
    const bool programmed = bench.core.families.selected().programmeFromFile();
    bench.requireIdle();
    if (!programmed || model.maker != kCoinControls) return;
    const CcShape shape = ccShape(model.code);
    const EepromFile file = parseEepromFile(text, shape.words);
    const bool ownCheckWord = shape.model.check == CcCheck::sentinelWord63;
    for (const auto& cell : bench.box.mech()->memory()) {
        if (cell.number >= shape.model.verifiedWords) continue;
        if (ownCheckWord && cell.number == shape.words - 1) continue;
        require(lenientInteger("&h" + cell.content) == file.image[cell.number],
                "the mech holds the file");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view bytes = fuzz::textOf(data, size);
    std::string_view name = fuzz::cut(bytes, '\n');
    const bool programs = name.ends_with('!');
    if (programs) name.remove_suffix(1);
    const MechModel& model = modelNamed(name);
    const std::string text = fromFileBytes(bytes);
    if (model.maker == kCoinControls) eepromFile(model, text);
    if (model.maker == kNri) nriFile(model, text);
    if (programs) program(model, bytes, text);
    return 0;
}
