#include "platform/vcl/core/event_handlers.h"

#include <deque>
#include <mutex>

namespace System::detail {

namespace {

struct Cells {
  std::mutex mutex;
  std::deque<TKeptCell> all;  // a deque does not move what it holds
  std::vector<TKeptCell*> free;
};

// Never destroyed: a closure may read its cell up to the end of the process,
// after this module's statics would have gone.
Cells& TheCells() {
  static Cells* cells = new Cells;
  return *cells;
}

}  // namespace

TKeptCell* TakeKeptCell(void* callable, unsigned long long& generation) {
  Cells& cells = TheCells();
  const std::lock_guard<std::mutex> lock(cells.mutex);
  TKeptCell* cell;
  if (cells.free.empty()) {
    cell = &cells.all.emplace_back();
  } else {
    cell = cells.free.back();
    cells.free.pop_back();
  }
  cell->Callable = callable;
  // Published after the callable, so that a closure that sees the generation sees the callable too.
  generation = cell->Generation.fetch_add(1, std::memory_order_acq_rel) + 1;
  return cell;
}

void GiveBackKeptCell(TKeptCell* cell) {
  if (!cell) return;
  Cells& cells = TheCells();
  const std::lock_guard<std::mutex> lock(cells.mutex);
  cell->Generation.fetch_add(1, std::memory_order_acq_rel);
  cell->Callable = nullptr;
  cells.free.push_back(cell);
}

}  // namespace System::detail
