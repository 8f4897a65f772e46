#pragma once
/// \file
/// An animated brush that moves its pattern on each step.
#include <windows.h>

#include <memory>

#include "platform/ostrel/mygeom.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/graphics/color.h"
#include "velkin/velkin_api.h"

/// An animated frame (rubber band, selection) drawn by inverting pixels through
/// one pattern brush per stage. Drawing the same frame again erases it;
/// stepping the stage (SetStage, called by the caller's timer) makes the
/// pattern move. Drawing and moving hold the object's critical section.
class VELKIN_API HAniBrush {
 public:
  /// twoTone: the left and right edges run through the stages in the opposite
  /// order to the top and bottom edges.
  explicit HAniBrush(bool twoTone);
  ~HAniBrush();
  HAniBrush(const HAniBrush&) = delete;
  HAniBrush& operator=(const HAniBrush&) = delete;

  /// Stage i's brush is the patternWidth x patternHeight pattern that starts
  /// i * (patternHeight / stages) rows into colors, so consecutive stages show
  /// the pattern shifted by that many rows; colors must hold the rows of every
  /// start plus one pattern. Replaces any earlier brushes. stages < 1 or a
  /// null table leaves the object uninitialised.
  void Assign(const Graphics::TColor* colors, int patternWidth, int patternHeight, int stages);
  /// As above with a table of its own per stage (colorTables[0..stages-1]).
  void Assign(const Graphics::TColor* const* colorTables, int patternWidth, int patternHeight, int stages);
  /// Deletes every brush. A frame still shown is forgotten, not erased: end it
  /// first.
  void Destroy();

  bool GetInited() const { return brushes_ != nullptr; }
  bool GetMoving() const { return !(rect_ == MyRect{}); }
  int GetStageCount() const { return stages_; }
  int GetStage() const { return stage_; }
  /// Stage s is used modulo the stage count (negative values too).
  void SetStage(int stage);
  void Reset() { SetStage(0); }
  int GetPatternWidth() const { return patternWidth_; }
  int GetPatternHeight() const { return patternHeight_; }
  bool GetTwoTone() const { return twoTone_; }
  /// The frame shown, (0, 0, 0, 0) when none.
  MyRect GetFrameRect() const { return rect_; }
  int GetFrameWidth() const { return width_; }

  /// Brush of the top and bottom edges for the current stage; null before
  /// Assign.
  HBRUSH GetTopBrush() const;
  /// Brush of the left and right edges: the top brush, or with twoTone the
  /// stages taken from the other end.
  HBRUSH GetBottomBrush() const;

  /// Shows a frame at r (normalised) on dc, width pixels thick inside r, from
  /// stage 0. A frame already shown is erased first. The caller keeps dc valid
  /// until EndDrawRect.
  void StartDrawRect(HDC dc, const MyRect& r, int width);
  /// Moves the shown frame to r.
  void DrawRect(const MyRect& r);
  /// Erases the shown frame.
  void EndDrawRect();

 private:
  void DrawFrame();
  int StageIndex() const;

  CRITICAL_SECTION lock_;
  int width_ = 0;
  MyRect rect_;
  HDC dc_ = nullptr;
  int stages_ = 0;
  int stage_ = 0;
  int patternWidth_ = 0;
  int patternHeight_ = 0;
  bool twoTone_;
  std::unique_ptr<OwnedBrush[]> brushes_;  // one per stage
};
