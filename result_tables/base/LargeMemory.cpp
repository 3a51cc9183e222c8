#include "result_tables/base/LargeMemory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

namespace Kestrel::ResultTables {

namespace {

constexpr std::size_t s_largePage = std::size_t{1} << 21;

bool isLarge(std::size_t bytes) { return bytes >= s_largePage; }

std::size_t wholePages(std::size_t bytes) {
  if (bytes > std::numeric_limits<std::size_t>::max() / 2) throw std::bad_alloc();
  return (bytes + s_largePage - 1) / s_largePage * s_largePage;
}

void* validated(void* memory) {
  if (memory == nullptr || memory == MAP_FAILED) throw std::bad_alloc();
  return memory;
}

void* mapped(std::size_t bytes) {
  return validated(::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
}

/// Of whole large pages, from where one can begin on.
void* mappedAtLargePage(std::size_t bytes) {
  auto* const memory = static_cast<std::byte*>(mapped(bytes + s_largePage));
  auto const before = (s_largePage - std::bit_cast<std::uintptr_t>(memory) % s_largePage) % s_largePage;
  if (before > 0) ::munmap(memory, before);
  auto* const begin = memory + before;
  if (before < s_largePage) ::munmap(begin + bytes, s_largePage - before);
  // Where there are no large pages, small ones do.
  static_cast<void>(::madvise(begin, bytes, MADV_HUGEPAGE));
  return begin;
}

}  // namespace

LargeMemory::LargeMemory(std::size_t bytes) : m_size(isLarge(bytes) ? wholePages(bytes) : bytes) {
  if (bytes > 0) m_data = isLarge(bytes) ? mappedAtLargePage(m_size) : validated(std::malloc(bytes));
}

LargeMemory::~LargeMemory() {
  if (isLarge(m_size)) {
    ::munmap(m_data, m_size);
  } else {
    std::free(m_data);
  }
}

void LargeMemory::grow(std::size_t bytes) {
  if (isLarge(m_size)) {
    auto const size = wholePages(bytes);
    m_data = validated(::mremap(m_data, m_size, size, MREMAP_MAYMOVE));
    m_size = size;
    return;
  }
  LargeMemory grown(bytes);
  if (m_size > 0) std::memcpy(grown.m_data, m_data, m_size);
  swap(grown);
}

void LargeMemory::release(std::size_t offset) {
  constexpr std::size_t page = 4096;
  auto const begin = (offset + page - 1) / page * page;
  if (isLarge(m_size) && begin < m_size)
    static_cast<void>(::madvise(static_cast<std::byte*>(m_data) + begin, m_size - begin, MADV_DONTNEED));
}

void askForLargePages(void const* memory, std::size_t bytes) {
  if (bytes < 2 * s_largePage) return;
  auto const page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  auto const address = std::bit_cast<std::uintptr_t>(memory);
  auto const begin = (address + page - 1) / page * page;
  auto const end = (address + bytes) / page * page;
  static_cast<void>(::madvise(std::bit_cast<void*>(begin), end - begin, MADV_HUGEPAGE));
}

}  // namespace Kestrel::ResultTables
