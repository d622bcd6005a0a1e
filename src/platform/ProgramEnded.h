#pragma once

namespace vantor {

/// Thrown by the innermost wait once the program is to end. Not a std::exception on purpose:
/// nothing that reports errors may catch it; only the outermost frame of a slot does.
struct ProgramEnded {};

}  // namespace vantor
