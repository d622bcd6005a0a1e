#include "measure/CoinsetFile.h"

#include <algorithm>

#include "catalogue/Text.h"
#include "measure/CoinNumber.h"

namespace vantor {

namespace {

constexpr int kRecordValues = 16;
constexpr int kHighestOutput = 6;
constexpr int kRawMaskOffset = 32768;

std::string nextCode(FieldReader& fields) {
    return std::string(trimmed(fields.next()));
}

int nextInteger(FieldReader& fields) {
    return lenientInteger(fields.next());
}

std::string fieldAt(const std::vector<std::string>& fields, std::size_t index) {
    return index < fields.size() ? fields[index] : std::string{};
}

struct KeyRow {
    std::string_view key;
    RecordKind kind;
};

constexpr std::array kKeys = {
    KeyRow{"CD", RecordKind::coin},       KeyRow{"CR", RecordKind::linkedCoin},
    KeyRow{"CO", RecordKind::copiedCoin}, KeyRow{"S", RecordKind::slug},
    KeyRow{"R", RecordKind::reference},   KeyRow{"V", RecordKind::values},
    KeyRow{"D", RecordKind::data},
};

void readLimitFields(FieldReader& fields, ParameterFields& parameter) {
    parameter.lowCode = nextCode(fields);
    parameter.lowOffset = nextInteger(fields);
    parameter.highCode = nextCode(fields);
    parameter.highOffset = nextInteger(fields);
    parameter.tolerance = nextInteger(fields);
}

/// What the values of a "D" record are, by sub-key. Sub-keys are words of the file format.
enum class DataKind { routing, outputMap, parameterString, compensation, routeTexts };
struct DataRow {
    std::string_view key;
    DataKind kind;
    int count = 0;
    bool jaguar = false;
};

constexpr std::array kDataRows = {
    DataRow{"435R", DataKind::routing, 23},
    DataRow{"450R", DataKind::routing, 3},
    DataRow{"SentinelR", DataKind::routing, 2},
    DataRow{"120M", DataKind::outputMap, 12, true},
    DataRow{"120N", DataKind::outputMap, 12, false},
    DataRow{"G13-6000P", DataKind::parameterString, 1},
    DataRow{"G40-0000P", DataKind::parameterString, 1},
    DataRow{"G18-3000P", DataKind::parameterString, 1},
    DataRow{"G13-6000X", DataKind::compensation, 6},
    DataRow{"G40-0000X", DataKind::compensation, 6},
    DataRow{"G18-3000X", DataKind::compensation, 6},
    DataRow{"G40-0000R", DataKind::routeTexts, 1},
    DataRow{"G18-3000R", DataKind::routeTexts, 1},
    DataRow{"G10-4000/5R", DataKind::routeTexts, 2},
};

int outputEntry(const std::string& entry, bool rawMasks) {
    if (rawMasks && entry.starts_with("x")) {
        return lenientInteger("&h" + entry.substr(1)) - kRawMaskOffset;
    }
    const int output = lenientInteger(entry);
    return output >= 1 && output <= kHighestOutput ? output : 0;
}

}  // namespace

CoinsetHeader parseCoinsetHeader(std::string_view line) {
    const std::vector<std::string> fields = quotedFields(line);
    const std::string mech = fieldAt(fields, 0);
    const std::size_t stop = mech.rfind('.');
    CoinsetHeader header;
    if (stop != std::string::npos) header.maker = mech.substr(0, stop);
    header.mechType = stop == std::string::npos ? mech : mech.substr(stop + 1);
    header.title = fieldAt(fields, 1);
    header.referenceCode = fieldAt(fields, 2);
    header.version = fieldAt(fields, 3);
    return header;
}

PromChoices parsePromChoices(std::string_view line) {
    const std::vector<std::string> fields = quotedFields(line);
    PromChoices choices;
    choices.size = fieldAt(fields, 0);
    choices.twoK = choices.size.ends_with("2K");
    std::size_t at = 1;
    for (int& segment : choices.segments) segment = lenientInteger(fieldAt(fields, at++));
    for (int& limit : choices.idleLimits) limit = lenientInteger(fieldAt(fields, at++));
    return choices;
}

CoinsetRecord parseCoinsetRecord(std::string_view line, int paramCount, bool slugCode) {
    FieldReader fields(line);
    CoinsetRecord record;
    const std::string key = nextCode(fields);
    const auto row = std::ranges::find(kKeys, std::string_view(key), &KeyRow::key);
    if (row != kKeys.end()) record.kind = row->kind;
    record.description = fields.next();

    const RecordKind kind = record.kind;
    const bool coin = kind == RecordKind::coin || kind == RecordKind::linkedCoin ||
                      kind == RecordKind::copiedCoin || kind == RecordKind::reference;
    if (coin) record.code = nextCode(fields);
    if (kind == RecordKind::copiedCoin) record.oldCode = nextCode(fields);
    if (kind == RecordKind::coin || kind == RecordKind::slug || kind == RecordKind::reference) {
        record.drops = std::max(nextInteger(fields), 0);
    }
    const auto count = static_cast<std::size_t>(std::clamp(paramCount, 0, kMaxParameters));
    for (std::size_t p = 0; p < count; ++p) {
        ParameterFields& parameter = record.parameters[p];
        if (kind == RecordKind::coin || kind == RecordKind::linkedCoin) {
            readLimitFields(fields, parameter);
        } else if (kind == RecordKind::slug) {
            parameter.separation = nextInteger(fields);
            parameter.tolerance = nextInteger(fields);
        } else if (kind == RecordKind::reference) {
            parameter.tolerance = nextInteger(fields);
        }
    }
    if (kind == RecordKind::slug) record.code = slugCode ? nextCode(fields) : kSlugCode;
    return record;
}

void storeCoinValues(std::string_view line, NriNewData& nri) {
    FieldReader fields(line);
    fields.next();
    for (int i = 1; i <= kRecordValues; ++i) nri.newCoinValue[i] = nextInteger(fields);
    nri.valueMultiplier = nextInteger(fields);
    nri.valuesPresent = true;
}

void storeFamilyData(std::string_view line, CoinsetData& coinset, NriNewData& nri) {
    FieldReader fields(line);
    fields.next();
    const std::string key = nextCode(fields);
    const auto row = std::ranges::find(kDataRows, std::string_view(key), &DataRow::key);
    if (row == kDataRows.end()) return;
    for (int i = 0; i < row->count; ++i) {
        const std::string value = fields.next();
        switch (row->kind) {
            case DataKind::routing:
                coinset.routing[i] = lenientInteger(value);
                break;
            case DataKind::outputMap:
                coinset.c120OutputMap[i + 1] =
                    outputEntry(std::string(trimmed(value)), row->jaguar);
                break;
            case DataKind::parameterString:
                nri.parameterString = value;
                break;
            case DataKind::compensation:
                nri.compensation[i] = lenientInteger(value);
                break;
            case DataKind::routeTexts:
                nri.routeText.at(static_cast<std::size_t>(i)) = trimmed(value);
                break;
        }
    }
    coinset.routingPresent |= row->kind == DataKind::routing || row->kind == DataKind::routeTexts;
    coinset.compensationPresent |= row->kind == DataKind::compensation;
    if (row->kind == DataKind::outputMap) {
        coinset.c120MapPresent = true;
        coinset.c120Jaguar = row->jaguar;
    }
}

}  // namespace vantor
