#include "measure/CoinNumber.h"

#include "catalogue/SessionState.h"
#include "catalogue/Text.h"

namespace vantor {

namespace {

constexpr int kCoinsPerSegment = 6;

int segmentOffset(std::string_view digit) {
    if (digit.size() != 1 || digit[0] < '1' || digit[0] > '4') return 0;
    return (digit[0] - '1') * kCoinsPerSegment;
}

}  // namespace

int coinnumber(std::string_view code) {
    if (code.starts_with("R") || code.starts_with("Coin")) {
        return lenientInteger(code.substr(code.size() < 2 ? 0 : code.size() - 2));
    }
    if (code.empty() || code == kSlugCode) return 0;
    if (code[0] >= '0' && code[0] <= '9') return lenientInteger(code);
    return static_cast<unsigned char>(code[0]) - 'A' + 1 + segmentOffset(code.substr(1));
}

bool isChannel(int number) {
    return number >= 1 && number <= kChannels;
}

}  // namespace vantor
