#pragma once

#include <span>
#include <utility>

namespace Kestrel {

/// The value of largest magnitude, bit for bit what these steps give: begin with 0.0, go through the values
/// from first to last, and take each one whose magnitude is greater than that of the one taken before. So the
/// value keeps its sign, of equal magnitudes the first stays, and NaN never counts.
///
/// Of pairs the first number counts. Any thread; O(n), in the widest vectors that the machine has.
[[nodiscard]] double largestMagnitude(std::span<double const> values);
[[nodiscard]] double largestMagnitude(std::span<std::pair<double, double> const> pairs);

/// What there are versions for, from narrow to wide. The baseline is that of the build: SSE2 where the
/// machine is an x86-64, NEON on aarch64, plain instructions where a machine has no vectors.
enum class InstructionSet { baseline, avx };

/// The widest that this machine has.
[[nodiscard]] InstructionSet widestInstructionSet();

/// The same in vectors of one instruction set. REQUIRES: the machine has it.
[[nodiscard]] double largestMagnitude(std::span<double const> values, InstructionSet instructions);
[[nodiscard]] double largestMagnitude(std::span<std::pair<double, double> const> pairs,
                                      InstructionSet instructions);

}  // namespace Kestrel
