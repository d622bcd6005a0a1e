#include "measure/TargetLists.h"

#include "catalogue/Text.h"

namespace vantor {

namespace {

constexpr int kLines = 6;
constexpr std::size_t kLineWidth = 10;
constexpr int kTwoSegments = 2;

}  // namespace

std::vector<std::string> segmentEntries(const PromState& prom, bool twoSegmentProm) {
    const bool four = prom.promSizeCode == 1 && !twoSegmentProm;
    std::vector<std::string> entries;
    for (int s = 0; s < (four ? kMarsSegments : kTwoSegments); ++s) {
        if (prom.segmentSelected[s]) entries.push_back(std::to_string(s + 1));
    }
    return entries;
}

std::vector<std::string> segmentCoins(std::string_view segment) {
    std::vector<std::string> coins;
    for (char letter = 'A'; letter <= 'F'; ++letter) coins.push_back(letter + std::string(segment));
    return coins;
}

std::vector<std::string> numberedCoins(int channelCount) {
    std::vector<std::string> coins;
    for (int c = 1; c <= channelCount; ++c) coins.push_back("Coin " + padded(c, 2));
    return coins;
}

std::vector<std::string> lineEntries() {
    std::vector<std::string> lines;
    for (int line = 1; line <= kLines; ++line) {
        const std::string digit = std::to_string(line);
        lines.push_back(std::string(kLineWidth - digit.size(), ' ') + digit);
    }
    return lines;
}

int lineOfCoin(std::string_view coin) {
    constexpr std::size_t kDigits = 2;
    const int number =
        lenientInteger(coin.size() > kDigits ? coin.substr(coin.size() - kDigits) : coin);
    const int line = number > kLines ? number - kLines : number;
    return line >= 1 && line <= kLines ? line : 0;
}

}  // namespace vantor
