#include "Business_TableProperties/LargestMagnitude.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>

namespace Kestrel {

namespace {

/// Where a greatest and a smallest number have one magnitude, what was seen at once is looked through a
/// second time for the first of them.
constexpr std::size_t s_numbersAtOnce = 512;

bool isGreater(double value, double current) { return std::abs(value) > std::abs(current); }

template <std::size_t Stride>
double stepByStep(double const* numbers, std::size_t count) {
  double current = 0.0;
  for (std::size_t i = 0; i < count; i += Stride) {
    if (isGreater(numbers[i], current)) current = numbers[i];
  }
  return current;
}

/// 0.0, which nothing replaces, where that is the magnitude; else one of the numbers has it.
template <std::size_t Stride>
double firstOfMagnitude(double const* numbers, double magnitude) {
  if (magnitude == 0.0) return 0.0;
  while (std::abs(*numbers) != magnitude) numbers += Stride;
  return *numbers;
}

namespace Baseline {
#define KESTREL_LANES 2
#define KESTREL_TARGET
#include "Business_TableProperties/LargestMagnitudeLanes.h"
#undef KESTREL_TARGET
#undef KESTREL_LANES
}  // namespace Baseline

#ifdef __x86_64__
namespace Avx {
#define KESTREL_LANES 4
#define KESTREL_TARGET [[gnu::target("avx")]]
#include "Business_TableProperties/LargestMagnitudeLanes.h"
#undef KESTREL_TARGET
#undef KESTREL_LANES
}  // namespace Avx
#endif

template <std::size_t Stride>
double largest(double const* numbers, std::size_t count, [[maybe_unused]] InstructionSet instructions) {
#ifdef __x86_64__
  if (instructions == InstructionSet::avx) return Avx::largest<Stride>(numbers, count);
#endif
  return Baseline::largest<Stride>(numbers, count);
}

}  // namespace

InstructionSet widestInstructionSet() {
#ifdef __x86_64__
  if (__builtin_cpu_supports("avx")) return InstructionSet::avx;
#endif
  return InstructionSet::baseline;
}

double largestMagnitude(std::span<double const> values, InstructionSet instructions) {
  return largest<1>(values.data(), values.size(), instructions);
}

double largestMagnitude(std::span<std::pair<double, double> const> pairs, InstructionSet instructions) {
  // A pair is its two numbers, one behind the other.
  static_assert(sizeof(std::pair<double, double>) == 2 * sizeof(double));
  return largest<2>(reinterpret_cast<double const*>(pairs.data()), 2 * pairs.size(), instructions);
}

double largestMagnitude(std::span<double const> values) {
  return largestMagnitude(values, widestInstructionSet());
}

double largestMagnitude(std::span<std::pair<double, double> const> pairs) {
  return largestMagnitude(pairs, widestInstructionSet());
}

}  // namespace Kestrel
