#include "AllocationFailure.h"

#include <cstdlib>

namespace {

struct ThreadState {
  bool isArmed = false;
  std::size_t successesLeft = 0;
  std::ptrdiff_t liveBlocks = 0;
};

thread_local ThreadState state;

void* allocate(std::size_t size) noexcept {
  if (state.isArmed && state.successesLeft == 0) {
    state.isArmed = false;
    return nullptr;
  }
  if (state.isArmed) --state.successesLeft;
  void* const block = std::malloc(size != 0 ? size : 1);
  if (block != nullptr) ++state.liveBlocks;
  return block;
}

void* allocateOrThrow(std::size_t size) {
  void* const block = allocate(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void release(void* block) noexcept {
  if (block == nullptr) return;
  --state.liveBlocks;
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) { return allocateOrThrow(size); }
void* operator new[](std::size_t size) { return allocateOrThrow(size); }
void* operator new(std::size_t size, std::nothrow_t const&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept { return allocate(size); }
void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }
void operator delete(void* block, std::nothrow_t const&) noexcept { release(block); }
void operator delete[](void* block, std::nothrow_t const&) noexcept { release(block); }

namespace Kestrel::TestSupport {

AllocationFailure::AllocationFailure(std::size_t successes) {
  state.successesLeft = successes;
  state.isArmed = true;
}

AllocationFailure::~AllocationFailure() { state.isArmed = false; }

bool AllocationFailure::hasHappened() const { return !state.isArmed; }

std::ptrdiff_t countLiveBlocks() { return state.liveBlocks; }

}  // namespace Kestrel::TestSupport
