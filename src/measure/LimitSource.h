#pragma once

#include <string>
#include <string_view>

#include "catalogue/MessageTable.h"
#include "catalogue/SessionState.h"

namespace vantor {

/// The source behind a coinset's one-character code; LimitSource::unknown for any other text.
[[nodiscard]] LimitSource limitSourceOf(std::string_view code);

/// A limit that follows the reference coin of channel code `code`, such as "R05".
[[nodiscard]] LimitOrigin referenceOrigin(std::string_view code);

/// What the source label shows; empty for an unknown source.
[[nodiscard]] std::string limitSourceText(const MessageTable& messages, const LimitOrigin& origin);

/// The text of a coinset's source code; empty for an unknown one.
[[nodiscard]] std::string limitSourceText(const MessageTable& messages, std::string_view code);

}  // namespace vantor
