// Draws a picture's steps and traces on an image: only what is new, and of the image only the rows
// of pixels that it touches. Steps lie below, traces above them in their order.
#pragma once

#include <QFont>
#include <QImage>
#include <QSize>
#include <vector>

#include "forms/control.h"
#include "platform/qt/look.h"
#include "platform/qt/trace_cover.h"

namespace penlog {

class PictureCanvas {
 public:
  /// With false pixels have the trace's colour or none of it, for comparisons.
  explicit PictureCanvas(bool antialiased = true) : antialiased_(antialiased) {}

  /// `pixels` of the display, `ratio` of them to a pixel of the window. Another size or ratio than
  /// before begins anew.
  void SetSize(const QSize& pixels, double ratio);

  /// Draws what `picture` has gained since the last call; all of it after a clearing, a new size or
  /// another set of colours. Returns the rows of pixels that have changed.
  PixelRows Follow(const Picture& picture, const QFont& font);

  /// Has the ratio of the display.
  const QImage& Image() const { return image_; }
  /// Steps drawn so far, for tests.
  std::size_t StepsDrawn() const { return steps_; }
  /// Width of a trace in pixels of the display.
  double Pen() const;

 private:
  /// A trace as it is drawn so far; it is in several parts where it went up.
  struct DrawnTrace {
    std::size_t points = 0;
    std::vector<TraceCover> parts;
  };

  bool IsAnew(const Picture& picture) const;
  void Clear();
  void DrawSteps(const Picture& picture, const QFont& font);
  PixelRows DrawTrace(const Trace& trace, DrawnTrace& drawn);
  void AddPart(DrawnTrace& drawn) const;
  PixelRows AddSegment(const QPointF& from, const QPointF& to, DrawnTrace& drawn) const;
  void Compose(const Picture& picture, const PixelRows& rows);

  bool antialiased_;
  double ratio_ = 1;
  QImage ground_;  // the steps
  QImage image_;
  std::size_t steps_ = 0;
  std::vector<DrawnTrace> traces_;
  std::uint32_t clearings_ = 0;
  const LookColours* look_ = nullptr;
};

}  // namespace penlog
