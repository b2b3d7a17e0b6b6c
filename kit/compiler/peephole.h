#pragma once

#include "z80.h"

#include <vector>

namespace tp3 {

/// Mends what instruction selection leaves when it looks at one operation at a time. Every rule keeps what
/// the code does, flags that are still looked at included.
void peephole(std::vector<z80::Instruction>& code);

} // namespace tp3
