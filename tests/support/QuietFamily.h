#pragma once

#include "link/MechFamily.h"

namespace vantor::test {

/// A maker's family that does nothing: a test's own one says what it does otherwise.
class QuietFamily : public MechFamily {
  public:
    explicit QuietFamily(std::string_view code) : maker(code) {}

    std::string_view maker;

    [[nodiscard]] std::string_view code() const override { return maker; }
    [[nodiscard]] FamilyLook look() const override { return {}; }
    [[nodiscard]] LimitRules limitRules() const override { return {}; }
    [[nodiscard]] CoinsetRules coinsetRules() const override { return {}; }
    void enableCoinData(int) override {}
    void disableCoinData() override {}
    bool readMemory() override { return true; }
    void readOldMemory() override {}
    void copyOldMemoryData() override {}
    void rebuildImage() override {}
    bool programAndVerify() override { return true; }
};

}  // namespace vantor::test
