#include <cstdint>
#include <memory>

#include "catalogue/Text.h"
#include "measure/CoinsetFile.h"

// A coinset file of any content, for a mech of 1 to 6 parameters (the first byte).

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    if (size == 0) return 0;
    const int paramCount = data[0] % kMaxParameters + 1;
    const std::string text = fromFileBytes({reinterpret_cast<const char*>(data + 1), size - 1});
    auto state = std::make_unique<SessionState>();
    int line = 0;
    for (const std::string_view content : splitLines(text)) {
        if (line == 0) (void)parseCoinsetHeader(content);
        if (line == 1) (void)parsePromChoices(content);
        const CoinsetRecord record = parseCoinsetRecord(content, paramCount, (data[0] & 64) != 0);
        if (record.kind == RecordKind::values) storeCoinValues(content, state->nriNew);
        if (record.kind == RecordKind::data)
            storeFamilyData(content, state->coinset, state->nriNew);
        ++line;
    }
    return 0;
}
