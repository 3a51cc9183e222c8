// The source of `largestMagnitude` for one instruction set. LargestMagnitude.cpp includes it once for each,
// in a namespace of its own, with the macros
//   KESTREL_LANES    how many numbers a vector holds, a power of two from 2 on
//   KESTREL_TARGET   the attribute that lets functions use the instructions
//
// The vectors are those of g++ and clang. Comparing and choosing are defined for them lane by lane as for
// numbers, on every machine: a comparison with NaN is false.

using Lanes [[gnu::vector_size(KESTREL_LANES * sizeof(double))]] = double;
using Two [[gnu::vector_size(2 * sizeof(double))]] = double;

inline constexpr std::size_t s_lanes = KESTREL_LANES;

/// The greatest and the smallest number that were seen in each lane, from 0.0 on.
struct Extremes {
  Lanes greatest{};
  Lanes smallest{};

  KESTREL_TARGET void see(double const* numbers) {
    Lanes lanes;
    std::memcpy(&lanes, numbers, sizeof lanes);
    // In this order NaN in a lane changes nothing, and each is one instruction.
    greatest = lanes > greatest ? lanes : greatest;
    smallest = lanes < smallest ? lanes : smallest;
  }

  KESTREL_TARGET void join(Extremes const& other) {
    greatest = other.greatest > greatest ? other.greatest : greatest;
    smallest = other.smallest < smallest ? other.smallest : smallest;
  }
};

/// Sees at least two lanes of numbers, each of them once or more.
KESTREL_TARGET inline Extremes extremesOf(double const* numbers, std::size_t count) {
  // Four at a time, as a comparison takes longer than it takes to begin the next.
  Extremes a;
  Extremes b;
  Extremes c;
  Extremes d;
  std::size_t i = 0;
  for (; i + 4 * s_lanes <= count; i += 4 * s_lanes) {
    a.see(numbers + i);
    b.see(numbers + i + s_lanes);
    c.see(numbers + i + 2 * s_lanes);
    d.see(numbers + i + 3 * s_lanes);
  }
  if (i + 2 * s_lanes <= count) {
    a.see(numbers + i);
    b.see(numbers + i + s_lanes);
    i += 2 * s_lanes;
  }
  if (i + s_lanes <= count) c.see(numbers + i);
  d.see(numbers + (count - s_lanes));
  a.join(b);
  c.join(d);
  a.join(c);
  return a;
}

/// The greatest of the even lanes and the greatest of the odd ones.
KESTREL_TARGET inline Two greatestOfEvenAndOdd(Lanes const& lanes) {
  Two result;
  std::memcpy(&result, &lanes, sizeof result);
  for (std::size_t i = 2; i < s_lanes; i += 2) {
    Two next;
    std::memcpy(&next, reinterpret_cast<char const*>(&lanes) + i * sizeof(double), sizeof next);
    result = next > result ? next : result;
  }
  return result;
}

/// `Stride` 1: all `count` numbers are values; 2: every other one is, beginning with the first.
template <std::size_t Stride>
KESTREL_TARGET inline double ofPart(double const* numbers, std::size_t count) {
  if (count < s_lanes) return stepByStep<Stride>(numbers, count);
  auto const extremes = extremesOf(numbers, count);
  auto const ups = greatestOfEvenAndOdd(extremes.greatest);
  auto const downs = greatestOfEvenAndOdd(-extremes.smallest);
  double const up = Stride == 1 && ups[1] > ups[0] ? ups[1] : ups[0];
  double const down = Stride == 1 && downs[1] > downs[0] ? downs[1] : downs[0];
  if (up != down) [[likely]]
    return up > down ? up : -down;
  return firstOfMagnitude<Stride>(numbers, up);
}

template <std::size_t Stride>
KESTREL_TARGET double largest(double const* numbers, std::size_t count) {
  double current = 0.0;
  while (count > 0) {
    auto const part = std::min(count, s_numbersAtOnce);
    double const value = ofPart<Stride>(numbers, part);
    if (isGreater(value, current)) current = value;
    numbers += part;
    count -= part;
  }
  return current;
}
