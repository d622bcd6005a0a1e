#include <cmath>
#include <filesystem>
#include <map>
#include <set>

#include "BoxBench.h"
#include "SampleText.h"
#include "boxsim/Coins.h"
#include "boxsim/MarsMech.h"
#include "catalogue/MechCatalogue.h"
#include "platform/Files.h"

namespace vantor::boxsim::test {
namespace {

bool meantToBeAlike(std::string_view a, std::string_view b) {
    const std::set<std::string_view> pair = {a, b};
    return pair == std::set<std::string_view>{"1 Dorin", "Old 1 Dorin"} ||
           pair == std::set<std::string_view>{"50 Pell", "Plated Disc"};
}

TEST(Coins, EachMarsModelTellsThemApartAndReadsThemInRange) {
    constexpr std::array kHighest = {3000.0, 3000.0, 4000.0};
    for (const std::string_view model : listedModels(kMars)) {
        const MarsMech mech(model);
        for (const CoinPiece& a : coinBag()) {
            const MarsPopulation pa = mech.population(a);
            for (std::size_t p = 0; p < 3; ++p) {
                EXPECT_GT(pa[p].mean - 6 * pa[p].spread, 2) << model << " " << a.name;
                EXPECT_LT(pa[p].mean + 6 * pa[p].spread, kHighest[p]) << model << " " << a.name;
            }
            for (const CoinPiece& b : coinBag()) {
                if (&a == &b) continue;
                const MarsPopulation pb = mech.population(b);
                bool apart = false;
                for (std::size_t p = 0; p < 3; ++p) {
                    // Windows of three spreads on either side, with room for offsets.
                    apart = apart || std::abs(pa[p].mean - pb[p].mean) >
                                         3 * (pa[p].spread + pb[p].spread) + 12;
                }
                EXPECT_EQ(apart, !meantToBeAlike(a.name, b.name))
                    << model << ": " << a.name << " and " << b.name;
            }
        }
    }
}

TEST(Coins, DrawsFollowTheirPopulation) {
    const MarsMech mech("MS1400");
    const MarsPopulation population = mech.population(*findCoin("5 Dorin"));
    Random random(42);
    constexpr int kDraws = 4000;
    std::array<double, 3> sum{}, squares{};
    for (int i = 0; i < kDraws; ++i) {
        const auto reading = mech.draw("5 DORIN", random);
        ASSERT_TRUE(reading);
        for (std::size_t p = 0; p < 3; ++p) {
            const double off = reading->at(p) - population[p].mean;
            sum[p] += off;
            squares[p] += off * off;
        }
    }
    for (std::size_t p = 0; p < 3; ++p) {
        EXPECT_LT(std::abs(sum[p] / kDraws), 0.08 * population[p].spread);
        EXPECT_NEAR(std::sqrt(squares[p] / kDraws), population[p].spread,
                    0.05 * population[p].spread);
    }
}

/// One sample file against the bench it is meant for.
class SampleFile {
  public:
    explicit SampleFile(const std::filesystem::path& path)
        : name_(path.filename().string()), lines_(sampleLines(path)) {}

    void check(std::map<std::string, int>& recordCounts, std::set<std::string>& models) {
        ASSERT_GT(lines_.size(), 3U) << name_;
        checkHeader(models);
        for (std::size_t i = 2; i < lines_.size(); ++i) {
            checkRecord(split(lines_[i], ','));
            ++recordCounts[lines_[i].substr(0, lines_[i].find(','))];
        }
    }

  private:
    void checkHeader(std::set<std::string>& models) {
        const auto first = split(lines_[0], ',');
        ASSERT_EQ(first.size(), 4U) << name_;
        EXPECT_EQ(first[2].size(), 5U) << name_;
        EXPECT_EQ(first[3].size(), 3U) << name_;
        ASSERT_TRUE(first[0].starts_with("Mars.")) << name_;
        const std::string model = first[0].substr(5);
        models.insert(model);
        ASSERT_TRUE(bench_.box.plugValidator("Mars", model)) << name_;
        coins_ = bench_.box.coins();
        const auto second = split(lines_[1], ',');
        ASSERT_EQ(second.size(), 11U) << name_;
        large_ = second[0] == "2K";
        EXPECT_TRUE(large_ || second[0] == "1K") << name_;
        for (std::size_t s = 1; s <= 4; ++s) selected_.push_back(second[s] == "1");
        const std::string idles = bench_.ask("Y");
        for (std::size_t i = 0; i < 3; ++i) {
            const int idle = std::stoi(idles.substr(2 + 6 * i, 5));
            EXPECT_LE(std::stoi(second[5 + 2 * i]), idle) << name_;
            EXPECT_GE(std::stoi(second[6 + 2 * i]), idle) << name_;
        }
    }

    void checkCoin(const std::string& coin, const std::string& drops) {
        EXPECT_NE(std::find(coins_.begin(), coins_.end(), coin), coins_.end()) << name_ << coin;
        EXPECT_TRUE(std::stoi(drops) >= 10 && std::stoi(drops) <= 15) << name_ << coin;
    }

    void checkChannel(const std::string& code) {
        ASSERT_EQ(code.size(), 2U) << name_;
        EXPECT_TRUE(code[0] >= 'A' && code[0] <= 'F') << name_ << code;
        const auto segment = static_cast<std::size_t>(code[1] - '1');
        ASSERT_LT(segment, large_ ? 4U : 2U) << name_ << code;
        EXPECT_TRUE(selected_[segment]) << name_ << code;
    }

    void checkRecord(const std::vector<std::string>& fields) {
        const std::map<std::string, std::size_t> lengths = {
            {"CD", 19}, {"CR", 18}, {"CO", 4}, {"S", 9}, {"R", 7}};
        const std::string& key = fields[0];
        ASSERT_TRUE(lengths.contains(key)) << name_ << ": " << key;
        ASSERT_EQ(fields.size(), lengths.at(key)) << name_ << ": " << fields[1];
        if (key == "CD" || key == "R") checkCoin(fields[1], fields[3]);
        if (key == "S") checkCoin(fields[1], fields[2]);
        if (key == "CD" || key == "CR" || key == "CO") checkChannel(fields[2]);
    }

    std::string name_;
    std::vector<std::string> lines_;
    BoxBench bench_;
    std::vector<std::string> coins_;
    std::vector<bool> selected_;
    bool large_ = false;
};

TEST(CoinSets, RunOnTheCoinsOfTheBench) {
    std::map<std::string, int> records;
    std::set<std::string> models;
    bool generic = false;
    for (const auto& entry : std::filesystem::directory_iterator(sampleFolder("CoinSets"))) {
        if (entry.path().extension() != ".cst") continue;
        generic = generic || entry.path().filename().string().starts_with("QZ");
        // The others have serial mechs and a test of their own.
        if (const auto text = readFile(entry.path()); text && !text->starts_with("Mars.")) continue;
        SampleFile(entry.path()).check(records, models);
    }
    EXPECT_TRUE(generic);
    for (const std::string_view model : listedModels(kMars)) {
        EXPECT_TRUE(models.contains(std::string(model))) << model;
    }
    for (const char* key : {"CD", "CR", "CO", "S", "R"}) EXPECT_GT(records[key], 0) << key;
}

}  // namespace
}  // namespace vantor::boxsim::test
