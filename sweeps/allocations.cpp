// Allocations that fail: operator new, malloc where the linker wraps it, and the engine's.

#include <openssl/crypto.h>

#include <cstdlib>
#include <new>

#include "sweeps/faults.h"

extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* block, std::size_t size);
}

namespace {

using sweeps::Fails;

// What the engine allocates goes on to malloc, but is one place.
bool in_engine = false;
sqlite3_mem_methods real;

bool MallocFails() { return !in_engine && Fails(sweeps::kMalloc); }

template <typename Allocate>
void* InEngine(Allocate allocate) {
  if (Fails(sweeps::kEngine)) return nullptr;
  in_engine = true;
  void* block = allocate();
  in_engine = false;
  return block;
}

void* Allocate(std::size_t size) { return Fails(sweeps::kNew) ? nullptr : __real_malloc(size | 1); }

void* AllocateOrThrow(std::size_t size) {
  if (void* block = Allocate(size)) return block;
  throw std::bad_alloc();
}

void Run(const sweeps::Options& options, sweeps::Figures& figures) {
  CRYPTO_set_mem_functions(
      [](std::size_t size, const char*, int) { return std::malloc(size); },
      [](void* block, std::size_t size, const char*, int) { return std::realloc(block, size); },
      [](void* block, const char*, int) { std::free(block); });
  sqlite3_shutdown();
  sqlite3_config(SQLITE_CONFIG_GETMALLOC, &real);
  sqlite3_mem_methods faulty = real;
  faulty.xMalloc = [](int size) { return InEngine([=] { return real.xMalloc(size); }); };
  faulty.xRealloc = [](void* block, int size) {
    return InEngine([=] { return real.xRealloc(block, size); });
  };
  sqlite3_config(SQLITE_CONFIG_MALLOC, &faulty);
  constexpr sweeps::FaultKind kKinds[] = {sweeps::kNew, sweeps::kMalloc, sweeps::kEngine};
  sweeps::SweepFaults(kKinds, options, figures);
}

const sweeps::Sweep kSweep("allocations", 10000, 300, &Run);

}  // namespace

extern "C" {
void* __wrap_malloc(std::size_t size) { return MallocFails() ? nullptr : __real_malloc(size); }
void* __wrap_calloc(std::size_t count, std::size_t size) {
  return MallocFails() ? nullptr : __real_calloc(count, size);
}
void* __wrap_realloc(void* block, std::size_t size) {
  return MallocFails() ? nullptr : __real_realloc(block, size);
}
}

void* operator new(std::size_t size) { return AllocateOrThrow(size); }
void* operator new[](std::size_t size) { return AllocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
