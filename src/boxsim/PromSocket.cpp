#include "boxsim/PromSocket.h"

#include <algorithm>

namespace vantor::boxsim {

namespace {

constexpr int kUndriven = 15;
constexpr Micros kBipolarCellTime{2000};  // a fuse is blown
constexpr Micros kE1CellTime{500};

}  // namespace

void PromSocket::insert(PromKind kind, int words, std::span<const std::uint8_t> contents) {
    kind_ = kind;
    cells_.clear();
    changed_.clear();
    if (kind == PromKind::none) return;
    cells_.assign(static_cast<std::size_t>(words > kSmall ? kLarge : kSmall), 0);
    const std::size_t known = std::min(cells_.size(), contents.size());
    for (std::size_t i = 0; i < known; ++i) cells_[i] = contents[i] & 15U;
}

void PromSocket::setSwitch(int number, bool on) {
    (number == 1 ? switch1_ : switch2_) = on;
}

bool PromSocket::switchOn(int number) const {
    return number == 1 ? switch1_ : switch2_;
}

int PromSocket::read(int address) const {
    const auto index = static_cast<std::size_t>(address);
    if (index >= cells_.size()) return kUndriven;
    if (kind_ == PromKind::e1 && switch2_) return kUndriven;
    return cells_[index];
}

void PromSocket::program(int address, int nibble) {
    const auto index = static_cast<std::size_t>(address);
    if (index >= cells_.size()) return;
    const unsigned wanted = static_cast<unsigned>(nibble) & 15U;
    const std::uint8_t before = cells_[index];
    if (kind_ == PromKind::bipolar) {
        cells_[index] = static_cast<std::uint8_t>(cells_[index] | wanted);
    } else if (switch1_ && switch2_) {
        cells_[index] = static_cast<std::uint8_t>(wanted);
    }
    if (cells_[index] != before) changed_.insert(address);
}

void PromSocket::noteRead(int first, int count) {
    changed_.erase(changed_.lower_bound(first), changed_.lower_bound(first + count));
}

Micros PromSocket::cellTime() const {
    return kind_ == PromKind::bipolar ? kBipolarCellTime : kE1CellTime;
}

}  // namespace vantor::boxsim
