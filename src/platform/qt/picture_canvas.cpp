#include "platform/qt/picture_canvas.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>

namespace penlog {

namespace {

constexpr double kLeastPen = 1.5;  // pixels of the window
constexpr double kPenShare = 330;  // of the picture's height
constexpr double kTickShare = 20;  // of the same: 150 twips of about 3000
constexpr Colour kGrid{200, 200, 200};

/// Lines that show a scale stand behind what is drawn in it: half as dark as a border.
QColor LineColour(Colour colour) {
  if (colour != kGrid) return Shown(colour);
  const QColor& line = Look().line;
  const QColor& ground = Look().readout_ground;
  return QColor((line.red() + ground.red()) / 2, (line.green() + ground.green()) / 2,
                (line.blue() + ground.blue()) / 2);
}

/// Draws the steps; all measures in pixels of the display.
class StepPainter {
 public:
  StepPainter(QImage& image, double ratio, const QFont& font)
      : painter_(&image), size_(image.size()), thin_(std::max(1, static_cast<int>(ratio))) {
    painter_.setRenderHint(QPainter::Antialiasing);
    QFont scaled = font;
    if (font.pixelSize() > 0) {
      scaled.setPixelSize(static_cast<int>(std::lround(font.pixelSize() * ratio)));
    } else {
      scaled.setPointSizeF(font.pointSizeF() * ratio);
    }
    painter_.setFont(scaled);
    tick_ = size_.height() / kTickShare;
    pen_ = std::max(ratio, size_.height() / 400.0);
  }

  void Draw(const DrawStep& step) {
    const QPointF from = PlaceOf(step.x1, step.y1);
    const QPointF to = PlaceOf(step.x2, step.y2);
    const QColor colour = LineColour(step.colour);
    painter_.setPen(QPen(colour, pen_));
    switch (step.kind) {
      case DrawStep::Kind::Line:
        DrawLine(from, to, colour);
        break;
      case DrawStep::Kind::Tick:
        DrawLine(from, TickEnd(from, to), colour);
        break;
      case DrawStep::Kind::Text:
        painter_.drawText(from, QString::fromStdString(step.text));
        break;
      case DrawStep::Kind::Dot:
        painter_.setBrush(colour);
        painter_.drawEllipse(from, 2 * pen_, 2 * pen_);
        break;
    }
  }

 private:
  QPointF PlaceOf(double x, double y) const { return {x * size_.width(), y * size_.height()}; }

  QPointF TickEnd(const QPointF& from, const QPointF& to) const {
    const QPointF way = to - from;
    const double length = std::hypot(way.x(), way.y());
    return length > 0 ? from + way * (tick_ / length) : from;
  }

  /// Upright and level lines lie on whole pixels, the last ones inside the picture.
  void DrawLine(const QPointF& from, const QPointF& to, const QColor& colour) {
    const bool upright = from.x() == to.x();
    if (!upright && from.y() != to.y()) {
      painter_.drawLine(from, to);
      return;
    }
    const QPoint begin(Pixel(std::min(from.x(), to.x())), Pixel(std::min(from.y(), to.y())));
    const QPoint end(Pixel(std::max(from.x(), to.x())), Pixel(std::max(from.y(), to.y())));
    const QSize size =
        upright ? QSize(thin_, end.y() - begin.y()) : QSize(end.x() - begin.x(), thin_);
    const QPoint inside(std::min(begin.x(), size_.width() - size.width()),
                        std::min(begin.y(), size_.height() - size.height()));
    painter_.fillRect(QRect(inside, size), colour);
  }

  static int Pixel(double place) {
    return static_cast<int>(std::lround(std::clamp(place, -1e6, 1e6)));
  }

  QPainter painter_;
  QSize size_;
  int thin_;
  double tick_ = 0;
  double pen_ = 1;
};

}  // namespace

double PictureCanvas::Pen() const {
  return std::max(kLeastPen * ratio_, image_.height() / kPenShare);
}

void PictureCanvas::SetSize(const QSize& pixels, double ratio) {
  if (pixels == image_.size() && ratio == ratio_) return;
  ratio_ = ratio;
  image_ = QImage(pixels, QImage::Format_RGB32);
  image_.setDevicePixelRatio(ratio);
  ground_ = QImage(pixels, QImage::Format_RGB32);
  look_ = nullptr;
}

bool PictureCanvas::IsAnew(const Picture& picture) const {
  return look_ != &Look() || picture.clearings != clearings_ || picture.steps.size() < steps_ ||
         picture.traces.size() < traces_.size();
}

void PictureCanvas::Clear() {
  look_ = &Look();
  ground_.fill(look_->readout_ground);
  image_.fill(look_->readout_ground);
  steps_ = 0;
  traces_.clear();
}

PixelRows PictureCanvas::Follow(const Picture& picture, const QFont& font) {
  if (image_.isNull()) return {};
  const PixelRows all{0, image_.height()};
  PixelRows changed;
  if (IsAnew(picture)) {
    clearings_ = picture.clearings;
    Clear();
    changed = all;
  }
  if (steps_ < picture.steps.size()) {
    DrawSteps(picture, font);
    changed = all;
  }
  traces_.resize(picture.traces.size());
  for (std::size_t i = 0; i < traces_.size(); ++i) {
    changed.Include(DrawTrace(picture.traces[i], traces_[i]));
  }
  if (!changed.IsEmpty()) Compose(picture, changed);
  return changed;
}

void PictureCanvas::DrawSteps(const Picture& picture, const QFont& font) {
  StepPainter painter(ground_, ratio_, font);
  for (; steps_ < picture.steps.size(); ++steps_) painter.Draw(picture.steps[steps_]);
}

PixelRows PictureCanvas::DrawTrace(const Trace& trace, DrawnTrace& drawn) {
  PixelRows changed;
  const double width = image_.width();
  const double height = image_.height();
  const auto place = [&](const TracePoint& point) {
    return QPointF(static_cast<double>(point.x) * width, static_cast<double>(point.y) * height);
  };
  std::size_t next = std::max<std::size_t>(drawn.points, 1);
  if (next >= trace.points.size()) return changed;
  QPointF from = place(trace.points[next - 1]);
  for (; next < trace.points.size(); ++next) {
    const QPointF to = place(trace.points[next]);
    changed.Include(AddSegment(from, to, drawn));
    from = to;
  }
  drawn.points = next;
  return changed;
}

void PictureCanvas::AddPart(DrawnTrace& drawn) const {
  drawn.parts.emplace_back(Pen(), antialiased_ ? kLinesPerPixel : 1);
}

/// A segment that goes up is one part, what follows it another.
PixelRows PictureCanvas::AddSegment(const QPointF& from, const QPointF& to,
                                    DrawnTrace& drawn) const {
  const bool up = to.y() < from.y();
  if (drawn.parts.empty() || up) AddPart(drawn);
  TraceCover& part = drawn.parts.back();
  const int height = image_.height();
  const PixelRows rows = up ? part.Add(to, from, height) : part.Add(from, to, height);
  if (up) AddPart(drawn);
  return rows;
}

void PictureCanvas::Compose(const Picture& picture, const PixelRows& rows) {
  for (int row = rows.first; row < rows.last; ++row) {
    std::memcpy(image_.scanLine(row), ground_.constScanLine(row),
                static_cast<std::size_t>(image_.bytesPerLine()));
  }
  // By their series, not by their age: a trace that was broken off goes on in its old place.
  std::vector<std::size_t> order(traces_.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return picture.traces[a].series < picture.traces[b].series;
  });
  for (const std::size_t i : order) {
    const QColor colour = Shown(picture.traces[i].colour);
    for (const TraceCover& part : traces_[i].parts) part.Paint(image_, rows, colour);
  }
}

}  // namespace penlog
