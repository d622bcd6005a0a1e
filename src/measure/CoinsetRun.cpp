#include "measure/CoinsetRun.h"

#include <algorithm>

#include "catalogue/FileNames.h"
#include "catalogue/Text.h"
#include "measure/CoinNumber.h"
#include "measure/LimitSource.h"
#include "platform/Files.h"

namespace vantor {

namespace {

namespace fs = std::filesystem;

constexpr int kErrorSubscript = 9;
constexpr int kCancelMessage = 407;
constexpr int kHighestReference = 12;
/// What is shown of a coinset's reference, and has room in a PROM.
constexpr std::size_t kReferenceLength = 5;
constexpr std::size_t kVersionLength = 3;
const std::string kEnd(kCrLf);

/// Text of an unknown file in a message box: short and printable.
std::string presentable(std::string text) {
    constexpr std::size_t kMost = 40;
    if (text.size() > kMost) text = text.substr(0, kMost) + "...";
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < ' ') c = '?';
    }
    return text;
}

}  // namespace

void CoinsetRun::run() {
    const RunFrame::Guard guard(frame_);
    parts_.errors.attempt(455, [this] { steps(); });
    frame_.endRun();
}

void CoinsetRun::steps() {
    frame_.clearForRun();
    if (parts_.display.duplicateTicked() && !parts_.families.selected().programmeFromFile()) return;
    parts_.state.images.oldMemoryRead = false;
    const auto file = choose();
    if (!file || !frame_.openLog()) return;
    perform(*file);
}

std::optional<CoinsetRun::Chosen> CoinsetRun::choose() {
    const auto text = [this](int id) { return parts_.state.msgText(id); };
    const auto chosen =
        parts_.prompts.askFile({.title = text(550),
                                .pattern = "*.cst",
                                .startFolder = parts_.state.app.folder / "CoinSets"});
    if (!chosen || chosen->empty()) return std::nullopt;
    fs::path path = coinsetFileName(*chosen);
    auto bytes = readFile(path);
    if (!bytes && upperCase(shownFileName(*chosen)).ends_with(".CST")) {
        // Files from old discs shout, and some systems tell COINS.CST from COINS.cst.
        path = *chosen;
        bytes = readFile(path);
    }
    if (!bytes) {
        parts_.prompts.ask({.title = text(406), .text = text(405), .icon = PromptIcon::critical});
        return std::nullopt;
    }
    if (!acceptDisclaimer(path)) return std::nullopt;
    return Chosen{path, fromFileBytes(*bytes)};
}

bool CoinsetRun::acceptDisclaimer(const fs::path& path) {
    constexpr std::string_view kGenericMark = "QZ";
    const std::string name = shownFileName(path);
    if (upperCase(name.substr(0, kGenericMark.size())) != kGenericMark) return true;
    const auto line = [this](int id) { return parts_.state.msgText(id) + kEnd; };
    return parts_.prompts.ask({.title = name,
                               .text = line(560) + kEnd + line(561) + line(562) + line(563) +
                                       line(564) + kEnd + line(565),
                               .icon = PromptIcon::information,
                               .buttons = PromptButtons::okCancel}) == Answer::ok;
}

void CoinsetRun::perform(const Chosen& file) {
    const bool& abort = parts_.state.gather.abortFlag;
    parts_.errors.attempt(438, [this] { parts_.display.showStatistics(true); });
    frame_.beginRun(false);
    badChannelTold_ = false;
    itemClear_ = false;
    parts_.display.hideMainWindow();
    frame_.takeWindow(shownPath(file.path), kCancelMessage);
    parts_.link.sendJ();

    std::vector<std::string_view> lines = splitLines(file.text);
    // A file that ends too soon is read as if empty lines followed.
    lines.resize(std::max<std::size_t>(lines.size(), 2));
    if (!header(lines[0])) return;
    bool idlesGood = true;
    if (parts_.families.selected().coinsetRules().promLine && !abort) {
        const PromChoices choices = parsePromChoices(lines[1]);
        promLine(lines[1]);
        frame_.askIdles();
        idlesGood = abort || checkIdles(choices);
    }
    for (lineNumber_ = 3; idlesGood && !abort && lineNumber_ <= lines.size(); ++lineNumber_) {
        record(lines[lineNumber_ - 1]);
    }
    parts_.prompts.beep();
    frame_.itemsDone();
    if (!idlesGood || abort) return;
    parts_.prompts.ask({.title = parts_.state.msgText(419), .text = parts_.state.msgText(418)});
    transfer_.PROMxfr();
}

bool CoinsetRun::header(std::string_view line) {
    SessionState& state = parts_.state;
    const CoinsetHeader header = parseCoinsetHeader(line);
    const auto models = listedModels(header.maker);
    const bool makerAccepted = header.maker == state.mech.manufacturer;
    const bool typeAccepted =
        makerAccepted && std::ranges::find(models, header.mechType) != models.end();
    if (!typeAccepted) {
        refuseHeader(header, makerAccepted);
        return false;
    }
    state.mech.mechType = header.mechType;
    applyMechType(state.mech, state.messages);
    setup_.CoinInitialise(1);
    state.coinset.title = header.title;
    state.coinset.referenceCode = header.referenceCode.substr(0, kReferenceLength);
    state.coinset.version = header.version.substr(0, kVersionLength);
    parts_.display.showCoinset();
    parts_.families.selected().startRun();
    log_.write({header.title, header.referenceCode, header.version});
    return true;
}

void CoinsetRun::refuseHeader(const CoinsetHeader& header, bool makerAccepted) {
    const auto warn = [this](int message, const std::string& name) {
        parts_.prompts.ask({.title = parts_.state.msgText(409),
                            .text = parts_.state.msgText(message) + presentable(name),
                            .icon = PromptIcon::exclamation});
    };
    warn(408, header.mechType);
    if (!makerAccepted) warn(410, header.maker);
}

void CoinsetRun::promLine(std::string_view line) {
    const PromChoices choices = parsePromChoices(line);
    PromState& prom = parts_.state.prom;
    prom.promSizeCode = choices.twoK ? 1 : 0;
    LogLine logged{choices.size};
    for (int s = 0; s < kMarsSegments; ++s) {
        const int check = choices.segments.at(static_cast<std::size_t>(s));
        prom.segmentSelected[s] = check == 1;
        logged.emplace_back(check);
    }
    parts_.display.showPromChoices();
    log_.write(logged);
    log_.write(emptyLogLine());
}

bool CoinsetRun::checkIdles(const PromChoices& choices) {
    const auto& idles = parts_.state.gather.idleReading;
    bool good = true;
    std::string readings;
    std::string limits;
    for (int i = 0; i < 3; ++i) {
        const auto at = static_cast<std::size_t>(i) * 2;
        const int low = choices.idleLimits.at(at);
        const int high = choices.idleLimits.at(at + 1);
        good = good && idles[i] >= low && idles[i] <= high;
        readings += spacedNumber(idles[i]) + std::string(13, ' ');
        limits += "[" + spacedNumber(low) + "  " + spacedNumber(high) + "  ]  ";
    }
    log_.write(idlesLine(idles));
    if (good) return true;
    const auto text = [this](int id) { return parts_.state.msgText(id); };
    parts_.prompts.ask({.title = text(417),
                        .text = text(412) + kEnd + kEnd + text(413) + text(414) + readings + kEnd +
                                text(413) + limits + kEnd + kEnd + text(416),
                        .icon = PromptIcon::critical});
    return false;
}

void CoinsetRun::record(std::string_view line) {
    SessionState& state = parts_.state;
    const CoinsetRecord record =
        parseCoinsetRecord(line, state.n(), parts_.families.selected().coinsetRules().slugCode);
    // Resetting what is reset already would make a file full of rubbish slow to refuse.
    if (record.kind == RecordKind::unknown && itemClear_) return;
    state.gather.gatherActive = false;
    state.item.isCoin = true;
    readings_.updateStats(1);
    itemClear_ = record.kind == RecordKind::unknown;
    state.item.itemCode = record.code;
    state.item.itemDescription = record.description;
    parts_.display.showItem(record.code, record.description);
    switch (record.kind) {
        case RecordKind::coin:
            return measuredCoin(record);
        case RecordKind::linkedCoin:
            return linkedCoin(record);
        case RecordKind::copiedCoin:
            return copiedCoin(record);
        case RecordKind::slug:
            return slug(record);
        case RecordKind::reference:
            return referenceCoin(record);
        case RecordKind::values:
            return storeCoinValues(line, state.nriNew);
        case RecordKind::data:
            return storeFamilyData(line, state.coinset, state.nriNew);
        case RecordKind::unknown:
            break;
    }
}

void CoinsetRun::measuredCoin(const CoinsetRecord& record) {
    SessionState& state = parts_.state;
    MeasurementSession& item = state.item;
    item.measureKind = 1;
    state.gather.coinsRemaining = record.drops;
    for (int p = 1; p <= state.n(); ++p) {
        const ParameterFields& fields = record.parameters.at(static_cast<std::size_t>(p - 1));
        item.limitOrigins[2 * p - 1] = {limitSourceOf(fields.lowCode), 0, {}};
        item.limitAdjust[2 * p - 1] = fields.lowOffset;
        item.limitOrigins[2 * p] = {limitSourceOf(fields.highCode), 0, {}};
        item.limitAdjust[2 * p] = fields.highOffset;
        item.flierTolerance[p] = fields.tolerance;
    }
    parts_.display.showLimitSources();
    gather_.gatherCoin(record.code, record.description, 1);
    if (!state.gather.keepExisting) return;
    const int channel = coinnumber(record.code);
    if (!isChannel(channel)) return badChannel(record.code);
    state.coinset.oldChannelSource[channel] = channel;
    state.coinset.usesOldChannels = true;
}

void CoinsetRun::linkedCoin(const CoinsetRecord& record) {
    SessionState& state = parts_.state;
    MeasurementSession& item = state.item;
    for (int p = 1; p <= state.n(); ++p) {
        const ParameterFields& fields = record.parameters.at(static_cast<std::size_t>(p - 1));
        item.limitOrigins[2 * p - 1] = referenceOrigin(fields.lowCode);
        item.limitAdjust[2 * p - 1] = fields.lowOffset;
        item.limitOrigins[2 * p] = referenceOrigin(fields.highCode);
        item.limitAdjust[2 * p] = fields.highOffset;
        item.flierTolerance[p] = fields.tolerance;
    }
    parts_.display.showLimitSources();
    const int channel = coinnumber(record.code);
    if (!isChannel(channel)) return badChannel(record.code);
    for (int p = 1; p <= state.n(); ++p) {
        state.coinset.referenceLinks[channel][p] = {item.limitOrigins[2 * p].reference,
                                                    item.limitAdjust[2 * p - 1],
                                                    item.limitAdjust[2 * p]};
    }
}

void CoinsetRun::copiedCoin(const CoinsetRecord& record) {
    const int channel = coinnumber(record.code);
    const int source = coinnumber(record.oldCode);
    if (!isChannel(channel)) return badChannel(record.code);
    if (!isChannel(source)) return badChannel(record.oldCode);
    parts_.state.coinset.oldChannelSource[channel] = source;
    parts_.state.coinset.usesOldChannels = true;
}

void CoinsetRun::slug(const CoinsetRecord& record) {
    SessionState& state = parts_.state;
    state.item.measureKind = 2;
    state.item.isCoin = false;
    state.gather.coinsRemaining = record.drops;
    for (int p = 1; p <= state.n(); ++p) {
        const ParameterFields& fields = record.parameters.at(static_cast<std::size_t>(p - 1));
        state.item.slugSeparation[p] = fields.separation;
        state.item.flierTolerance[p] = fields.tolerance;
    }
    gather_.gatherCoin(record.code, record.description, 2);
}

void CoinsetRun::referenceCoin(const CoinsetRecord& record) {
    SessionState& state = parts_.state;
    MeasurementSession& item = state.item;
    item.measureKind = 3;
    state.gather.coinsRemaining = record.drops;
    for (int p = 1; p <= state.n(); ++p) {
        item.flierTolerance[p] = record.parameters.at(static_cast<std::size_t>(p - 1)).tolerance;
    }
    item.limitOrigins.fill({LimitSource::mean, 0, {}});
    item.limitAdjust.fill(0);
    parts_.display.showLimitSources();
    if (!gather_.gatherCoin(record.code, record.description, 3)) return;
    const int channel = coinnumber(record.code);
    if (channel < 0 || channel > kHighestReference) return badChannel(record.code);
    state.coinset.referenceMeans[channel] = item.mean;
    state.coinset.referenceMeasured[channel] = true;
}

void CoinsetRun::badChannel(const std::string& code) {
    if (badChannelTold_) return;
    badChannelTold_ = true;
    parts_.errors.report(
        455, "Line " + std::to_string(lineNumber_) + ": no channel \"" + presentable(code) + "\"",
        kErrorSubscript);
}

}  // namespace vantor
