// What this machine takes for what the memory costs a program: a line of 64 bytes out of each cache and out
// of memory when they are read one after the other, and a page that the system hands out.

#include <benchmark/benchmark.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

namespace {

constexpr std::size_t s_lineBytes = 64;

/// Reads as many bytes again and again.
void readLines(benchmark::State& state) {
  std::vector<std::uint64_t> const words(static_cast<std::size_t>(state.range(0)) / sizeof(std::uint64_t), 1);
  for ([[maybe_unused]] auto const iteration : state)
    benchmark::DoNotOptimize(std::accumulate(words.begin(), words.end(), std::uint64_t{0}));
  state.counters["items"] = static_cast<double>(state.range(0)) / s_lineBytes;
}

void touchPages(benchmark::State& state) {
  constexpr std::size_t pages = 4096;
  auto const pageBytes = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  for ([[maybe_unused]] auto const iteration : state) {
    auto* const memory = static_cast<char*>(
        ::mmap(nullptr, pages * pageBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    if (memory == MAP_FAILED) {
      state.SkipWithError("no memory");
      return;
    }
    ::madvise(memory, pages * pageBytes, MADV_NOHUGEPAGE);
    for (std::size_t page = 0; page < pages; ++page) memory[page * pageBytes] = 1;
    benchmark::ClobberMemory();
    ::munmap(memory, pages * pageBytes);
  }
  state.counters["items"] = pages;
}

BENCHMARK(readLines)->ArgName("bytes")->Arg(16 << 10)->Arg(512 << 10)->Arg(512 << 20);
BENCHMARK(touchPages);

}  // namespace

BENCHMARK_MAIN();
