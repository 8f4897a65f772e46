#include "velkin/draw/h_abrush.h"

#include <algorithm>

#include "velkin/gdi/gdi_brushutil.h"

namespace {

MyRect Normalised(const MyRect& r) {
  return {std::min(r.left, r.right), std::min(r.top, r.bottom), std::max(r.left, r.right), std::max(r.top, r.bottom)};
}

// Holds the critical section for one scope.
class Locker {
 public:
  explicit Locker(CRITICAL_SECTION& cs) : cs_(cs) { EnterCriticalSection(&cs_); }
  ~Locker() { LeaveCriticalSection(&cs_); }
  Locker(const Locker&) = delete;
  Locker& operator=(const Locker&) = delete;

 private:
  CRITICAL_SECTION& cs_;
};

}  // namespace

HAniBrush::HAniBrush(bool twoTone) : twoTone_(twoTone) { InitializeCriticalSection(&lock_); }

HAniBrush::~HAniBrush() {
  Destroy();
  DeleteCriticalSection(&lock_);
}

void HAniBrush::Destroy() {
  Locker hold(lock_);
  if (!brushes_) return;
  brushes_.reset();
  rect_ = MyRect{};
  dc_ = nullptr;
}

void HAniBrush::Assign(const Graphics::TColor* colors, int patternWidth, int patternHeight, int stages) {
  Destroy();
  if (!colors || stages < 1) return;
  Locker hold(lock_);
  stages_ = stages;
  patternWidth_ = patternWidth;
  patternHeight_ = patternHeight;
  brushes_ = std::make_unique<OwnedBrush[]>(static_cast<size_t>(stages));
  const long long shift = static_cast<long long>(patternWidth) * (patternHeight / stages);
  for (int i = 0; i < stages; ++i) brushes_[i].reset(GDICreateBrush(colors + i * shift, patternWidth, patternHeight));
}

void HAniBrush::Assign(const Graphics::TColor* const* colorTables, int patternWidth, int patternHeight, int stages) {
  Destroy();
  if (!colorTables || stages < 1) return;
  Locker hold(lock_);
  stages_ = stages;
  patternWidth_ = patternWidth;
  patternHeight_ = patternHeight;
  brushes_ = std::make_unique<OwnedBrush[]>(static_cast<size_t>(stages));
  for (int i = 0; i < stages; ++i) brushes_[i].reset(GDICreateBrush(colorTables[i], patternWidth, patternHeight));
}

int HAniBrush::StageIndex() const {
  const int m = stage_ % stages_;
  return m < 0 ? m + stages_ : m;
}

HBRUSH HAniBrush::GetTopBrush() const { return brushes_ ? brushes_[StageIndex()].get() : nullptr; }

HBRUSH HAniBrush::GetBottomBrush() const {
  if (!twoTone_) return GetTopBrush();
  return brushes_ ? brushes_[stages_ - 1 - StageIndex()].get() : nullptr;
}

void HAniBrush::DrawFrame() { GDIDrawBrushRect(dc_, rect_, -width_, GetTopBrush(), GetBottomBrush()); }

void HAniBrush::SetStage(int stage) {
  // Not under the lock: a timer may step the stage while nothing is drawn.
  if (GetMoving() && GetInited()) DrawFrame();
  stage_ = stage;
  if (GetMoving() && GetInited()) DrawFrame();
}

void HAniBrush::StartDrawRect(HDC dc, const MyRect& r, int width) {
  if (!GetInited()) return;
  Locker hold(lock_);
  if (GetMoving()) EndDrawRect();
  dc_ = dc;
  width_ = width;
  Reset();
  rect_ = Normalised(r);
  DrawFrame();
}

void HAniBrush::DrawRect(const MyRect& r) {
  if (!GetInited() || !GetMoving()) return;
  Locker hold(lock_);
  DrawFrame();
  rect_ = Normalised(r);
  DrawFrame();
}

void HAniBrush::EndDrawRect() {
  if (!GetInited() || !GetMoving()) return;
  Locker hold(lock_);
  DrawFrame();
  rect_ = MyRect{};
}
