#include "boxsim/Outbox.h"

#include <algorithm>
#include <utility>

#include "boxsim/Wire.h"

namespace vantor::boxsim {

namespace {
constexpr std::string_view kBatteryWarning = "B";
}

Outbox::Bytes Outbox::ended(std::string_view line) const {
    Bytes bytes(line.begin(), line.end());
    bytes.push_back(kCarriageReturn);
    if (lineFeeds_) bytes.push_back('\n');
    return bytes;
}

void Outbox::put(const Bytes& piece, Micros at) {
    for (std::size_t i = 0; i < piece.size(); ++i) {
        line_.put(piece[i], at, i + 1 == piece.size());
    }
}

void Outbox::maybeBatteryWarning(Micros at) {
    if (faults_.warnsOfBattery()) put(ended(kBatteryWarning), at);
}

void Outbox::maybeLengthen(Bytes& piece, bool asLine) {
    constexpr std::uint8_t kSurplus = '7';
    const auto count = faults_.lengthensAnswer();
    if (!count) return;
    const std::size_t ending = asLine && lineFeeds_ ? 2 : 1;
    const std::size_t place = piece.size() - std::min(ending, piece.size());
    piece.insert(piece.begin() + static_cast<Bytes::difference_type>(place), *count, kSurplus);
}

void Outbox::send(std::vector<Bytes> pieces, bool asLines, Micros at) {
    std::vector<Bytes> sent = pieces;
    if (faults_.repeatsAnswer()) sent = std::exchange(previous_, {});
    previous_ = std::move(pieces);
    if (!sent.empty()) maybeLengthen(sent.back(), asLines);
    for (const Bytes& piece : sent) {
        put(piece, at);
        if (asLines) maybeBatteryWarning(at);
    }
}

void Outbox::answer(std::span<const std::string> lines, Micros at) {
    std::vector<Bytes> pieces;
    pieces.reserve(lines.size());
    for (const std::string& line : lines) pieces.push_back(ended(line));
    send(std::move(pieces), true, at);
}

void Outbox::reply(std::span<const std::uint8_t> bytes, Micros at) {
    send({Bytes(bytes.begin(), bytes.end())}, false, at);
}

void Outbox::announce(std::string_view line, Micros at) {
    put(ended(line), at);
    if (line != kBatteryWarning) maybeBatteryWarning(at);
}

}  // namespace vantor::boxsim
