#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "measure/CoinsetFile.h"
#include "measure/Gather.h"
#include "measure/RunFrame.h"
#include "measure/Transfer.h"

namespace vantor {

/// Walks the technician through a coinset file, item by item, and hands the results over.
class CoinsetRun {
  public:
    CoinsetRun(const MeasureFlows::Parts& parts, RunFrame& frame, RunLog& log, Readings& readings,
               MeasureSetup& setup, Gather& gather, Transfer& transfer)
        : parts_(parts),
          frame_(frame),
          log_(log),
          readings_(readings),
          setup_(setup),
          gather_(gather),
          transfer_(transfer) {}

    void run();

  private:
    /// The file that the technician chose and agreed to; nothing when the run ends here.
    struct Chosen {
        std::filesystem::path path;
        std::string text;
    };
    [[nodiscard]] std::optional<Chosen> choose();
    [[nodiscard]] bool acceptDisclaimer(const std::filesystem::path& path);

    void steps();
    void perform(const Chosen& file);
    [[nodiscard]] bool header(std::string_view line);
    void refuseHeader(const CoinsetHeader& header, bool makerAccepted);
    void promLine(std::string_view line);
    [[nodiscard]] bool checkIdles(const PromChoices& choices);

    void record(std::string_view line);
    void measuredCoin(const CoinsetRecord& record);
    void linkedCoin(const CoinsetRecord& record);
    void copiedCoin(const CoinsetRecord& record);
    void slug(const CoinsetRecord& record);
    void referenceCoin(const CoinsetRecord& record);
    void badChannel(const std::string& code);

    MeasureFlows::Parts parts_;
    RunFrame& frame_;
    RunLog& log_;
    Readings& readings_;
    MeasureSetup& setup_;
    Gather& gather_;
    Transfer& transfer_;
    std::size_t lineNumber_ = 0;  ///< of the record being run, from 1
    bool badChannelTold_ = false;
    bool itemClear_ = false;  ///< the item is as a reset left it
};

}  // namespace vantor
