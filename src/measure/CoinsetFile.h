#pragma once

#include <array>
#include <string>
#include <string_view>

#include "catalogue/SessionState.h"

namespace vantor {

// A coinset is a text file of lines:
//
//   maker.model,title,reference code,version           quotes protect commas
//   size,seg1,seg2,seg3,seg4,low,high,low,high,low,high  with a PROM socket; else ignored
//   CD,description,code,drops,{low source,low offset,high source,high offset,tolerance} x n
//   CR,description,code,{low reference,low offset,high reference,high offset,tolerance} x n
//   CO,description,new code,old code
//   S,description,drops,{separation,tolerance} x n[,code]
//   R,description,code,drops,{tolerance} x n
//   V,value 1,..,value 16,multiplier
//   D,sub-key,values..
//
// A missing field is empty, an empty number 0; whatever follows the last field is ignored.

struct CoinsetHeader {
    std::string maker;
    std::string mechType;
    std::string title;
    std::string referenceCode;  ///< whole; a mech has room for 5 characters
    std::string version;        ///< whole; a mech has room for 3 characters
};
[[nodiscard]] CoinsetHeader parseCoinsetHeader(std::string_view line);

struct PromChoices {
    std::string size;  ///< as written
    bool twoK = false;
    std::array<int, kMarsSegments> segments{};  ///< check values, 1 = takes part
    std::array<int, 6> idleLimits{};            ///< low and high of idle values 0, 1, 2
};
[[nodiscard]] PromChoices parsePromChoices(std::string_view line);

enum class RecordKind { coin, linkedCoin, copiedCoin, slug, reference, values, data, unknown };

struct ParameterFields {
    std::string lowCode, highCode;  ///< limit source or reference codes, trimmed
    int lowOffset = 0, highOffset = 0;
    int separation = 0;
    int tolerance = 0;  ///< percent
};

struct CoinsetRecord {
    RecordKind kind = RecordKind::unknown;
    std::string description;  ///< blanks kept
    std::string code;         ///< trimmed; "Slug" for a slug without one
    std::string oldCode;
    int drops = 0;                                           ///< 0 or more
    std::array<ParameterFields, kMaxParameters> parameters;  ///< parameter p at p - 1
};
/// `slugCode`: "S" records of this family end with a coin code.
[[nodiscard]] CoinsetRecord parseCoinsetRecord(std::string_view line, int paramCount,
                                               bool slugCode);

/// Takes a "V" line.
void storeCoinValues(std::string_view line, NriNewData& nri);
/// Takes a "D" line; an unknown sub-key changes nothing.
void storeFamilyData(std::string_view line, CoinsetData& coinset, NriNewData& nri);

}  // namespace vantor
