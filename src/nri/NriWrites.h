#pragma once

#include <optional>
#include <string>
#include <vector>

#include "nri/NriLayout.h"
#include "platform/Services.h"

namespace vantor {

/// One write command with its data; `data` is empty when what is needed is not there.
struct NriWrite {
    std::string command;
    std::string data;
    int waitMs = 0;       ///< afterwards
    bool always = false;  ///< also sent after a failure
    int progress = 0;     ///< of the progress window, shown afterwards
};
/// Everything that programming sends, in order.
[[nodiscard]] std::vector<NriWrite> nriWrites(const NriShape& shape,
                                              const ChannelLimitTable& limits,
                                              const NriFields& fields, const Date& today);
/// The same for programming from a file; nothing when a block that the model needs is missing or
/// has the wrong length.
[[nodiscard]] std::optional<std::vector<NriWrite>> nriFileWrites(const NriShape& shape,
                                                                 const NriBlockTexts& blocks);

}  // namespace vantor
