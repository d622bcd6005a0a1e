#pragma once

#include <string>

#include "measure/Gather.h"
#include "measure/RunFrame.h"
#include "measure/Transfer.h"

namespace vantor {

/// Changes one coin channel and keeps what the mech holds of the others: a coin added or replaced,
/// a slug kept out, or limits edited by hand.
class Wizard {
  public:
    Wizard(const MeasureFlows::Parts& parts, RunFrame& frame, RunLog& log, Readings& readings,
           Gather& gather, Transfer& transfer)
        : parts_(parts),
          frame_(frame),
          log_(log),
          readings_(readings),
          gather_(gather),
          transfer_(transfer) {}

    /// The wizard panel takes the place of the measurements panel; only the wizards and its Cancel
    /// go on from there.
    void open();
    /// Back to the measurements panel.
    void cancel();

    /// The whole wizard on what the panel says, up to the limits window.
    void run(WizardMode mode);

  private:
    /// The messages of one gather.
    struct Pass {
        int kind = 1;  ///< measureKind: 1 the coin, 2 the slug
        int description = 0;
        int prompt = 0;
        int done = 0;
    };

    void steps(WizardMode mode);
    void showReference(WizardMode mode);
    /// Takes a wizard that did not begin off the window.
    void showNothing();
    void keepOtherChannels(const WizardInputs& inputs);
    void logIdles();
    void gatherItems(const WizardInputs& inputs);
    /// False when nothing was stored.
    bool gatherItem(const Pass& pass, const WizardInputs& inputs);
    void setGatherRules(int kind);

    MeasureFlows::Parts parts_;
    RunFrame& frame_;
    RunLog& log_;
    Readings& readings_;
    Gather& gather_;
    Transfer& transfer_;
    std::string code_;  ///< the target coin as the list shows it
};

}  // namespace vantor
