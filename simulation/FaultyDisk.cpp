#include "FaultyDisk.h"

#include <sqlite3.h>

#include <stdexcept>
#include <utility>

#include "Dice.h"

namespace pelorino {
namespace {

struct State {
  sqlite3_vfs* real = nullptr;
  FaultyDisk::Fault fault = FaultyDisk::Fault::none;
  std::int64_t percent = 0;
  Dice dice{0};
  std::int64_t operationsLeft = -1;
  std::function<void()> die;
};

/// Never destroyed: the library's threads may be at work while the process exits.
State& state = *new State;

bool strikes() {
  return state.fault != FaultyDisk::Fault::none && state.dice.chance(state.percent);
}

/// The code with which a writing operation fails now, or SQLITE_OK.
int failureOfWriting(int inputOutputError) {
  if (state.operationsLeft >= 0 && state.operationsLeft-- == 0) state.die();
  if (!strikes()) return SQLITE_OK;
  return state.fault == FaultyDisk::Fault::full ? SQLITE_FULL : inputOutputError;
}

/// The real file lies behind the one that SQLite knows.
sqlite3_file* realOf(sqlite3_file* file) {
  return file + 1;
}

template <auto Method, class... Arguments>
int pass(sqlite3_file* file, Arguments... arguments) {
  sqlite3_file* real = realOf(file);
  return (real->pMethods->*Method)(real, arguments...);
}

int read(sqlite3_file* file, void* to, int amount, sqlite3_int64 offset) {
  const bool fails = state.fault == FaultyDisk::Fault::inputOutput && strikes();
  return fails ? SQLITE_IOERR_READ : pass<&sqlite3_io_methods::xRead>(file, to, amount, offset);
}

int write(sqlite3_file* file, const void* from, int amount, sqlite3_int64 offset) {
  const int failure = failureOfWriting(SQLITE_IOERR_WRITE);
  if (failure == SQLITE_OK) return pass<&sqlite3_io_methods::xWrite>(file, from, amount, offset);
  // A full or broken disk may have taken a part of it.
  const int part = static_cast<int>(state.dice.below(amount + 1));
  if (part > 0) static_cast<void>(pass<&sqlite3_io_methods::xWrite>(file, from, part, offset));
  return failure;
}

int truncate(sqlite3_file* file, sqlite3_int64 size) {
  const int failure = failureOfWriting(SQLITE_IOERR_TRUNCATE);
  return failure != SQLITE_OK ? failure : pass<&sqlite3_io_methods::xTruncate>(file, size);
}

int sync(sqlite3_file* file, int flags) {
  const int failure = failureOfWriting(SQLITE_IOERR_FSYNC);
  return failure != SQLITE_OK ? failure : pass<&sqlite3_io_methods::xSync>(file, flags);
}

// Version 1: no memory mapping and no shared memory, so that every access comes by here.
const sqlite3_io_methods methods = {
    1,
    pass<&sqlite3_io_methods::xClose>,
    read,
    write,
    truncate,
    sync,
    pass<&sqlite3_io_methods::xFileSize, sqlite3_int64*>,
    pass<&sqlite3_io_methods::xLock, int>,
    pass<&sqlite3_io_methods::xUnlock, int>,
    pass<&sqlite3_io_methods::xCheckReservedLock, int*>,
    pass<&sqlite3_io_methods::xFileControl, int, void*>,
    pass<&sqlite3_io_methods::xSectorSize>,
    pass<&sqlite3_io_methods::xDeviceCharacteristics>,
};

int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  file->pMethods = nullptr;
  if (strikes()) return SQLITE_CANTOPEN;
  sqlite3_vfs* real = state.real;
  const int code = real->xOpen(real, name, realOf(file), flags, outFlags);
  if (code == SQLITE_OK) file->pMethods = &methods;
  return code;
}

int remove(sqlite3_vfs*, const char* name, int syncDirectory) {
  const int failure = failureOfWriting(SQLITE_IOERR_DELETE);
  sqlite3_vfs* real = state.real;
  return failure != SQLITE_OK ? failure : real->xDelete(real, name, syncDirectory);
}

}  // namespace

void FaultyDisk::install() {
  static sqlite3_vfs& faulty = *new sqlite3_vfs;
  sqlite3_vfs* real = sqlite3_vfs_find(nullptr);
  if (real == nullptr) throw std::runtime_error("SQLite has no VFS");
  state.real = real;
  faulty = *real;
  faulty.zName = "faulty";
  faulty.szOsFile = static_cast<int>(sizeof(sqlite3_file)) + real->szOsFile;
  faulty.xOpen = open;
  faulty.xDelete = remove;
  if (sqlite3_vfs_register(&faulty, 1) != SQLITE_OK) throw std::runtime_error("no VFS");
}

void FaultyDisk::set(Fault fault, std::int64_t percent, std::uint64_t seed) {
  state.fault = fault;
  state.percent = percent;
  state.dice = Dice(seed);
}

void FaultyDisk::dieAfter(std::int64_t operations, std::function<void()> die) {
  state.die = std::move(die);
  state.operationsLeft = operations;
}

}  // namespace pelorino
