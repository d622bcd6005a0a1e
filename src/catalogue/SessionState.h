#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>

#include "catalogue/MechCatalogue.h"
#include "catalogue/MessageTable.h"
#include "catalogue/Ranged.h"

namespace vantor {

inline constexpr int kChannels = 24;  ///< coin channels 1..24
inline constexpr int kLimitColumns =
    12;  ///< columns 1..12: 2p - 1 low, 2p high limit of parameter p
inline constexpr int kMaxParameters = 6;  ///< parameters 1..6
inline constexpr int kMostCoinsPerChannel = 6;
inline constexpr int kMostSlugs = 6;
inline constexpr int kMostReadings = 500;
inline constexpr int kMarsSegments = 4;

/// link/: the port, the waits, what is being assembled.
struct LinkState {
    int portNumber = 1;        ///< 1..30
    bool portOpen = false;     ///< opened by this program and open
    bool boxFound = false;     ///< the start-up check found the box
    bool replyFlag = false;    ///< a text line came since the last sendAndWait
    int replyCounter = 0;      ///< ms left of the innermost wait for a reply
    int delayCounter = 0;      ///< ms left of the innermost waitTicks
    int keepAliveCounter = 0;  ///< seconds
    bool keepAliveOn = false;
    int coinDisplayHold = 0;  ///< ticks of 100 ms
    std::string lineBuffer;
    std::array<std::uint8_t, 33> frameBuffer{};
    int frameCount = 0;   ///< bytes in frameBuffer; 0 = no frame open
    bool ending = false;  ///< the program is to end: the innermost wait throws ProgramEnded
};

/// link/: what the box and the mech said last. A waiting routine clears what it waits for.
struct BoxReplies {
    bool serialModeFlag = false;   ///< the box passes the mech's own bytes through
    bool commandModeFlag = false;  ///< the box said that it is back in command mode
    bool statusReceived = false;
    bool mechPresent = false;
    int timing1 = 0, timing2 = 0, timing3 = 0, timing4 = 0;
    std::string boxVersion;
    bool promLineAck = false;   ///< "Z": a programming line is done
    bool promReadDone = false;  ///< the last line of a PROM read is stored
    // CC, I2C
    bool i2cAckFlag = false;
    bool i2cNakFlag = false;
    int wordValue = 0;  ///< 0..65535; -1 after a reply with a wrong sum
    bool wordReadyFlag = false;
    bool wordChecksumError = false;
    // Sentinel and NRI
    bool sentinelOpen = false;
    std::string sentinelVersion = "I0.0";
    std::string sentinelBuffer;
    std::string replyText;
    int linesExpected = 0;
    bool linesComplete = false;
    bool nriAckFlag = false;
    bool nriQueryFlag = false;
    bool nriG10Mode = false;  ///< an NRI G10 sends coin records (validator test)
};

/// Validity bounds of one Mars reading, ends included.
struct ReadingRange {
    int low = 2;
    int high = 3000;
};

/// measure/: the gather in progress.
struct GatherState {
    Ranged<int, 0, 10> latestReading;  ///< parameter p at p - 1
    Ranged<int, 0, 3> idleReading;     ///< sensor idle values 0..2
    std::array<ReadingRange, 3> readingRange{{{2, 3000}, {2, 3000}, {2, 4000}}};
    int coinsRemaining = 0;
    bool gatherActive = false;  ///< a gather is waiting for drops
    bool abortFlag = false;     ///< Cancel Operation: every wait of a run ends on it
    bool keepExisting = false;  ///< the technician kept the existing coin of a channel
    bool runActive = false;     ///< a coinset run or wizard is in progress
    bool wizardRun = false;
    bool logEnabled = false;
};

/// How one limit is derived. `reference` stands for "Ref nn" and `unknown` for a code that none
/// of the others has.
enum class LimitSource { threeSd, twoSd, mean, low, high, fixed, reference, unknown };

/// The source of one limit; `reference` is the reference channel for LimitSource::reference and
/// `referenceCode` that channel as the coinset wrote it.
struct LimitOrigin {
    LimitSource source = LimitSource::twoSd;
    int reference = 0;
    std::string referenceCode;
};

/// measure/: the item being measured. Limit index i runs 1..2n: 2p - 1 low, 2p high of parameter p.
struct MeasurementSession {
    Ranged<Ranged<int, 0, kMaxParameters>, 0, kMostReadings> readings;  ///< rows and columns from 1
    int readingCount = 0;
    Ranged<float, 0, kMaxParameters> mean, sdLower, sdUpper;  ///< from 1
    Ranged<int, 0, kMaxParameters> lowest, highest;           ///< from 1
    Ranged<int, 0, kLimitColumns> limitAdjust;                ///< from 1
    Ranged<int, 0, kMaxParameters> slugSeparation;            ///< from 1
    Ranged<int, 0, kMaxParameters> flierTolerance;            ///< from 1, percent
    Ranged<int, 0, kLimitColumns> limits;                     ///< from 1
    Ranged<LimitOrigin, 0, kLimitColumns> limitOrigins;       ///< from 1
    bool isCoin = true;                                       ///< itemType: coin, else slug
    int measureKind = 1;                                      ///< 1 coin, 2 slug, 3 reference coin
    int nextItem = 0;                                         ///< next free CoinTable row, 0..99
    std::string itemCode;
    std::string itemDescription;
};

/// measure/: one row per measured item, rows 0..100.
struct CoinTable {
    /// Column 0 kind, 1 channel, 2..2n+1 the limits 1..2n.
    Ranged<Ranged<int, 0, 25>, 0, 100> itemLimits;
    /// Columns 0..n-1 means, n..2n-1 sdLower, 2n..3n-1 sdUpper.
    Ranged<Ranged<float, 0, 25>, 0, 100> itemStats;
};

/// One limit pair that follows a measured reference coin.
struct ReferenceLink {
    int reference = 0;  ///< channel of the reference coin; 0 = none
    int lowOffset = 0;
    int highOffset = 0;
};

/// measure/: what a coinset (or a wizard) says beyond the measured items.
struct CoinsetData {
    std::string title, referenceCode, version;  ///< as shown; 5 and 3 characters of the last two
    Ranged<int, 1, kChannels>
        oldChannelSource;  ///< OldChannelSource: signed source channel, 0 = none
    bool usesOldChannels = false;
    Ranged<Ranged<float, 0, kMaxParameters>, 0, 12>
        referenceMeans;                     ///< channel 0..12, parameter from 1
    Ranged<bool, 0, 12> referenceMeasured;  ///< measured in this run
    Ranged<Ranged<ReferenceLink, 0, kMaxParameters>, 0, kChannels>
        referenceLinks;          ///< parameter from 1
    Ranged<int, 0, 22> routing;  ///< CoinsetRouting
    bool routingPresent = false;
    Ranged<int, 1, 12> c120OutputMap;  ///< 0 none, 1..6 output, raw mask - 32768
    bool c120MapPresent = false;
    bool c120Jaguar = false;
    bool compensationPresent = false;
};

/// nri/: what a coinset or a wizard wants written; the old side comes with the family.
struct NriNewData {
    Ranged<int, 1, kChannels> newCoinValue;  ///< also the ME181's ChannelValue: its first twelve
    int valueMultiplier = 1;
    bool valuesPresent = false;  ///< the coinset gave coin values and multiplier
    Ranged<int, 0, 5> compensation;
    std::array<std::string, 2> routeText;
    std::string parameterString;  ///< as the coinset gave it; decoded by the family
};

/// What the memory of an NRI mech means. A model uses only some of the groups.
struct NriFields {
    Ranged<Ranged<int, 1, kLimitColumns>, 1, kChannels> limits;  ///< columns as ChannelLimits
    Ranged<int, 1, kChannels> coinValues;   ///< 13..16: the tube values of the G10 models
    int valueMultiplier = 1;                ///< as stored; its low 6 bits count, 0 counts as 1
    Ranged<int, 1, kChannels> outputCodes;  ///< one byte each
    Ranged<int, 1, kChannels> outputs;      ///< output number 0..6 plus the flag bits 64 and 128
    Ranged<Ranged<int, 1, kMaxParameters>, 1, kChannels> parameterMap;  ///< 0..15, parameter from 1
    Ranged<int, 0, 5> compensation;                                     ///< bytes
    bool compensationPresent = false;      ///< the compensation is to be written
    std::string date;                      ///< six hexadecimal digits: day, month, year - 2000
    std::string header;                    ///< sent back as it was read
    std::array<std::string, 2> routeText;  ///< as on the wire
};

/// nri/: the memory of an NRI mech.
struct NriImage {
    Ranged<std::string, 1, 28> blocks;  ///< as received, or as a data file gave them
    NriFields old;                      ///< of the last read
    NriFields carryOver;  ///< of the read for the take-over: the mech before it was programmed
    NriFields next;       ///< to be programmed, beside the channel limits
};

/// The coins that feed a channel, by CoinTable row.
struct ChannelCoinList {
    int count = 0;  ///< 0..6
    Ranged<int, 1, kMostCoinsPerChannel> rows;
};

/// limits/: limits per coin channel and what is judged from them.
struct LimitsState {
    /// ChannelLimits. Mars 0..4095, other makers 0..255.
    Ranged<Ranged<int, 1, kLimitColumns>, 1, kChannels> channelLimits;
    Ranged<ChannelCoinList, 1, kChannels> channelCoins;
    int slugCount = 0;                               ///< 0..6
    Ranged<int, 1, kMostSlugs> slugList;             ///< CoinTable rows
    Ranged<float, 1, kChannels> acceptanceEstimate;  ///< 0..1
    Ranged<float, 1, kMostSlugs> rejectionEstimate;  ///< 0..1
    int selectedSegment = 0;                         ///< 0-based, displayed
    bool limitsEdited = false;                       ///< the technician typed into a limit box
    bool changeFlag = false;  ///< the limits in the image were edited by hand
    bool utilitiesFromLimits = false;
};

enum class TargetProm { bipolar, vantorE1 };

/// mars/ and cc/: memory images; index 0..512.
using MechImage = Ranged<int, 0, 512>;
struct ImagesState {
    MechImage old;               ///< as last read from the mech
    MechImage carryOver;         ///< copy of the old image whose channels are taken over
    MechImage next;              ///< the new image, to be programmed
    bool oldComplete = false;    ///< `old` holds every cell of the last read
    std::string oldModel;        ///< the mech that `old` was read from: maker, full stop, model
    bool oldMemoryRead = false;  ///< a complete read for the take-over was done in this session
};

/// mars/: choices for the PROM.
struct PromState {
    int promSizeCode = 0;  ///< 0 = 1K, 1 = 2K
    Ranged<bool, 0, kMarsSegments - 1> segmentSelected;
    TargetProm target = TargetProm::vantorE1;
    bool duplicateSegments = false;  ///< the box "Duplicate Segments" / "Clone Coin Mech" is ticked
    int programmingSegment = 1;      ///< 1-based, shown while programming
    Ranged<int, 1, 12> oldChannelValue;
};

/// valtest/: the validator test.
struct ValtestState {
    bool validatorTestFromMain = true;
    int tubeCount = 0;  ///< positions when the last one is the reject position, else 0
    std::string g40Variant;
};

/// app/: the program itself.
struct AppState {
    std::string softwareVersion;
    std::filesystem::path folder;  ///< the program's folder
    bool configLoaded = false;
    std::string reserved1 = " 0", reserved2 = " 0";  ///< configuration fields 3 and 4, kept as text
};

/// Everything the program knows, in one place; created in app/ and handed down by reference.
struct SessionState {
    MessageTable messages;    // catalogue/
    MechSelection mech;       // catalogue/
    LinkState link;           // link/
    BoxReplies box;           // link/
    GatherState gather;       // measure/
    MeasurementSession item;  // measure/
    CoinTable coinTable;      // measure/
    CoinsetData coinset;      // measure/
    NriNewData nriNew;        // measure/, used by nri/ and mars/ (ME181 values)
    NriImage nri;             // nri/
    LimitsState limits;       // limits/
    ImagesState images;       // mars/, cc/
    PromState prom;           // mars/
    ValtestState valtest;     // valtest/
    AppState app;             // app/

    [[nodiscard]] std::string msgText(int id) const { return messages.msgText(id); }
    /// paramCount of the selected model.
    [[nodiscard]] int n() const { return mech.info.paramCount; }

    /// A read of the selected mech begins (`complete` false) or brought every cell (true).
    void noteOldImage(bool complete) {
        images.oldComplete = complete;
        images.oldModel = mech.manufacturer + "." + mech.mechType;
    }
    /// `images.old` holds the whole memory of the mech that is selected now, not of one before it.
    [[nodiscard]] bool oldImageWhole() const {
        return images.oldComplete && images.oldModel == mech.manufacturer + "." + mech.mechType;
    }
};

}  // namespace vantor
