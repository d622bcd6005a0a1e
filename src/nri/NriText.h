#pragma once

#include <string>
#include <vector>

#include "catalogue/MechCatalogue.h"
#include "catalogue/MessageTable.h"
#include "nri/NriLayout.h"

namespace vantor {

// What the memory utilities show of an NRI mech, as text for a pane of fixed pitch. Every line
// ends with CR LF.

enum class NriPage { limits, map, other };

/// One way to look at the memory.
struct NriView {
    int caption = 0;  ///< message number of its entry in the list
    NriPage page = NriPage::limits;
};

/// The views of a model, in the order of the list.
[[nodiscard]] std::vector<NriView> nriViews(const NriModel& model);

/// The text of a page; a map page of a model without a map is empty. `paramNames` as in
/// MechTypeInfo.
[[nodiscard]] std::string nriText(NriPage page, const NriShape& shape, const NriFields& fields,
                                  const std::array<std::string, 7>& paramNames,
                                  const MessageTable& messages);

}  // namespace vantor
