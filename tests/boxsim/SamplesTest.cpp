#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "MechBench.h"
#include "SampleText.h"
#include "catalogue/MechCatalogue.h"

namespace vantor::boxsim::test {
namespace {

/// Sensors that a mech's parameters are, where it has more of them.
std::vector<std::size_t> measuredSensors(const MechModel& model) {
    if (model.code == "G13-6000") return {4, 1, 2, 0, 5, 6};
    if (model.code == "G40-0000") return {0, 1, 3, 6, 8, 10};
    std::vector<std::size_t> all;
    for (int p = 0; p < model.paramCount; ++p) all.push_back(static_cast<std::size_t>(p));
    return all;
}

struct Spread {
    double mean = 0;
    double deviation = 0;
};

std::vector<Spread> measured(const SimulatedMech& mech, const MechModel& model,
                             const std::string& coin) {
    constexpr int kDraws = 300;
    Random random(5);
    std::map<std::size_t, std::pair<double, double>> sums;
    for (int i = 0; i < kDraws; ++i) {
        const auto reading = mech.draw(coin, random).value_or(CoinReading{});
        for (const std::size_t sensor : measuredSensors(model)) {
            const int value = reading.at(sensor);
            EXPECT_TRUE(value > 2 && value < 253) << model.code << coin << sensor;
            sums[sensor].first += value;
            sums[sensor].second += value * value;
        }
    }
    std::vector<Spread> spreads;
    for (const std::size_t sensor : measuredSensors(model)) {
        const double mean = sums[sensor].first / kDraws;
        spreads.push_back({mean, std::sqrt(sums[sensor].second / kDraws - mean * mean)});
    }
    return spreads;
}

TEST(Coins, EachSerialModelTellsThemApart) {
    const std::set<std::set<std::string>> alike = {{"1 Dorin", "Old 1 Dorin"},
                                                   {"50 Pell", "Plated Disc"}};
    for (const MechModel& model : mechModels()) {
        if (model.maker == kMars) continue;
        MechBench bench(model.maker, model.code);
        std::map<std::string, std::vector<Spread>> coins;
        for (const std::string& coin : bench.box.coins()) {
            coins[coin] = measured(*bench.box.mech(), model, coin);
        }
        for (const auto& [a, pa] : coins) {
            for (const auto& [b, pb] : coins) {
                if (a == b) continue;
                bool apart = false;
                for (std::size_t p = 0; p < pa.size(); ++p) {
                    apart = apart || std::abs(pa[p].mean - pb[p].mean) >
                                         3 * (pa[p].deviation + pb[p].deviation) + 5;
                }
                EXPECT_EQ(apart, !alike.contains({a, b})) << model.code << ": " << a << ", " << b;
            }
        }
    }
}

/// One sample coin set against the bench it is meant for.
class SerialSample {
  public:
    SerialSample(const std::filesystem::path& path, const MechModel& model)
        : name_(path.filename().string()),
          lines_(sampleLines(path)),
          model_(model),
          bench_(model.maker, model.code) {}

    void check(std::set<std::string>& keys) {
        const auto header = split(lines_.at(0), ',');
        ASSERT_EQ(header.size(), 4U) << name_;
        EXPECT_EQ(header[2].size(), 5U) << name_;
        EXPECT_EQ(header[3].size(), 3U) << name_;
        for (std::size_t i = 2; i < lines_.size(); ++i) {
            const auto fields = split(lines_[i], ',');
            keys.insert(fields[0] == "D" ? fields.at(1) : fields[0]);
            checkRecord(fields);
        }
        EXPECT_GE(channels_.size(), 6U) << name_;
    }

  private:
    void checkRecord(const std::vector<std::string>& fields) {
        const auto n = static_cast<std::size_t>(model_.paramCount);
        const bool slugCode = model_.code == "G13-6000" || model_.code == "G40-0000";
        const std::map<std::string, std::size_t> lengths = {
            {"CD", 4 + 5 * n},           {"CR", 3 + 5 * n}, {"CO", 4},
            {"S", 3 + 2 * n + slugCode}, {"R", 4 + n},      {"V", 18},
            {"D", dataLength(fields)}};
        const std::string& key = fields[0];
        ASSERT_TRUE(lengths.contains(key)) << name_ << ": " << key;
        ASSERT_EQ(fields.size(), lengths.at(key)) << name_ << ": " << fields[1];
        if (key == "CD" || key == "R") checkCoin(fields[1], fields[3]);
        if (key == "S") checkCoin(fields[1], fields[2]);
        if (key == "CD" || key == "CR" || key == "CO") {
            EXPECT_TRUE(channels_.insert(channel(fields[2])).second) << name_ << fields[2];
        }
        if (key == "S" && slugCode) {
            EXPECT_TRUE(channels_.contains(channel(fields.back())));
        }
        if (key == "V") checkValues(fields);
        if (key == "D") checkData(fields);
    }

    static std::size_t dataLength(const std::vector<std::string>& fields) {
        const std::map<std::string, std::size_t> lengths = {
            {"435R", 23},      {"450R", 3},      {"SentinelR", 2}, {"120M", 12},
            {"G13-6000P", 1},  {"G40-0000P", 1}, {"G18-3000P", 1}, {"G13-6000X", 6},
            {"G40-0000X", 6},  {"G18-3000X", 6}, {"G40-0000R", 1}, {"G18-3000R", 1},
            {"G10-4000/5R", 2}};
        const auto found = lengths.find(fields.at(1));
        return found == lengths.end() ? 0 : 2 + found->second;
    }

    int channel(const std::string& code) {
        const int number = code.starts_with("Coin ") ? std::stoi(code.substr(5)) : 0;
        EXPECT_TRUE(number >= 1 && number <= model_.channelCount) << name_ << ": " << code;
        return number;
    }

    void checkCoin(const std::string& coin, const std::string& drops) {
        const auto coins = bench_.box.coins();
        EXPECT_NE(std::find(coins.begin(), coins.end(), coin), coins.end()) << name_ << coin;
        EXPECT_TRUE(std::stoi(drops) >= 10 && std::stoi(drops) <= 15) << name_ << coin;
    }

    /// Values must be what the mech can hold: whole multiples of its multiplier, one byte of them,
    /// or as many digits as its field has.
    void checkValues(const std::vector<std::string>& fields) {
        const int multiplier = std::stoi(fields[17]);
        const bool hexadecimal = model_.channelCount == 12 && !model_.code.starts_with("G10");
        for (std::size_t i = 1; i <= 16; ++i) {
            const int value = std::stoi(fields[i]);
            const int most = hexadecimal ? 255 * multiplier : 999;
            EXPECT_TRUE(value >= 0 && value <= most) << name_ << ": " << value;
            if (hexadecimal) {
                EXPECT_EQ(value % multiplier, 0) << name_ << ": " << value;
            }
        }
    }

    void checkData(const std::vector<std::string>& fields) {
        const std::string& key = fields[1];
        EXPECT_TRUE(key.starts_with(model_.code) || key.starts_with(model_.code.substr(1))) << key;
        if (key.ends_with("P")) {
            ASSERT_EQ(fields[2].size(), 108U) << name_;
            EXPECT_EQ(fields[2].find_first_not_of("0123456789ABCDEF"), std::string::npos) << name_;
        } else if (key == "G10-4000/5R" || key == "G40-0000R" || key == "G18-3000R") {
            EXPECT_EQ(fields[2].size(), 12U) << name_;
            EXPECT_EQ(fields[2].find_first_not_of("0123456789"), std::string::npos) << name_;
        } else {
            const int most = key.ends_with("X") ? 255 : 65535;
            for (std::size_t i = 2; i < fields.size(); ++i) {
                if (fields[i].starts_with("x")) continue;
                EXPECT_TRUE(std::stoi(fields[i]) >= 0 && std::stoi(fields[i]) <= most) << fields[i];
            }
        }
    }

    std::string name_;
    std::vector<std::string> lines_;
    const MechModel& model_;
    MechBench bench_;
    std::set<int> channels_;
};

TEST(CoinSets, ThereIsOneForEachSerialModelAndItRunsOnTheBench) {
    std::set<std::string> keys;
    std::set<std::string_view> models;
    for (const auto& entry : std::filesystem::directory_iterator(sampleFolder("CoinSets"))) {
        const std::string head = split(sampleLines(entry.path()).at(0), ',')[0];
        const std::size_t stop = head.rfind('.');
        const MechModel* model = findModel(head.substr(0, stop), head.substr(stop + 1));
        ASSERT_NE(model, nullptr) << head;
        if (model->maker == kMars) continue;
        models.insert(model->code);
        SerialSample(entry.path(), *model).check(keys);
    }
    EXPECT_EQ(models.size(), listedModels(kCoinControls).size() + listedModels(kNri).size());
    const std::set<std::string> wanted = {
        "CD",        "CO",        "CR",        "R",         "S",          "V",         "120M",
        "435R",      "450R",      "SentinelR", "G13-6000P", "G13-6000X",  "G40-0000P", "G40-0000X",
        "G40-0000R", "G18-3000P", "G18-3000X", "G18-3000R", "G10-4000/5R"};
    EXPECT_EQ(keys, wanted);
}

TEST(MemoryFiles, HoldWhatTheirMechTakes) {
    struct Case {
        const char* maker;
        const char* model;
        const char* file;
        std::size_t lines;
        int first;
    };
    for (const Case& c : {Case{"CC", "435", "435-Dorin.txt", 256, 0},
                          Case{"NRI", "G13-6000", "G13-6000-Dorin.txt", 28, 1}}) {
        MechBench bench(c.maker, c.model);
        const auto lines = sampleLines(sampleFolder("MemoryFiles") / c.file);
        ASSERT_EQ(lines.size(), c.lines);
        int bytesSum = 0;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const auto fields = split(lines[i], ',');
            ASSERT_EQ(fields.size(), 2U) << lines[i];
            ASSERT_EQ(fields[0], std::to_string(c.first + static_cast<int>(i)));
            const bool quoted = lines[i].ends_with('"');
            ASSERT_EQ(quoted, c.first == 1) << lines[i];
            std::string content = fields[1];
            if (!quoted) {
                const int word = std::stoi(content);
                char digits[8];
                std::snprintf(digits, sizeof digits, "%04X", static_cast<unsigned>(word));
                content = digits;
                if (i < 127) bytesSum += word / 256 + word % 256;
                if (i == 127) {
                    EXPECT_EQ((bytesSum + word / 256) % 256, 0);
                }
            }
            EXPECT_TRUE(bench.box.mech()->setMemory(c.first + static_cast<int>(i), content))
                << lines[i];
        }
        Random random(17);
        int channel = 0;
        for (const char* coin : {"5 Pell", "10 Pell", "20 Pell", "50 Pell", "1 Dorin", "2 Dorin",
                                 "5 Dorin", "Wash Token"}) {
            EXPECT_EQ(bench.box.mech()->channelFor(*bench.box.mech()->draw(coin, random), {}),
                      channel++)
                << c.model << coin;
        }
    }
}

}  // namespace
}  // namespace vantor::boxsim::test
