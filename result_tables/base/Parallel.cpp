#include "result_tables/base/Parallel.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <exception>
#include <thread>
#include <vector>

namespace Kestrel::ResultTables {

namespace {

std::atomic<std::size_t> s_busyThreads = 0;

}  // namespace

void forEachInParallel(std::size_t count, std::size_t jobs, std::function<void(std::size_t)> const& work) {
  assert(jobs > 0);
  std::atomic<std::size_t> next = 0;
  std::vector<std::exception_ptr> errors(count);
  auto const runSome = [&] {
    for (auto i = next++; i < count; i = next++) {
      try {
        work(i);
      } catch (...) {
        errors[i] = std::current_exception();
        next = count;
      }
    }
  };
  {
    std::vector<std::jthread> helpers;
    for (std::size_t i = 1; i < std::min(jobs, count); ++i) {
      helpers.emplace_back([&runSome] {
        BusyThread const busy;
        runSome();
      });
    }
    runSome();
  }
  auto const first = std::ranges::find_if(errors, [](auto const& error) { return error != nullptr; });
  if (first != errors.end()) std::rethrow_exception(*first);
}

std::size_t numberOfProcessors() { return std::max(1U, std::thread::hardware_concurrency()); }

BusyThread::BusyThread() { ++s_busyThreads; }

BusyThread::~BusyThread() { --s_busyThreads; }

std::size_t numberOfIdleProcessors() {
  auto const busy = 1 + s_busyThreads;
  return numberOfProcessors() - std::min(numberOfProcessors(), busy);
}

}  // namespace Kestrel::ResultTables
