// The ground beside the rods: soil bands, tip resistance, sleeve and pore pressure over a page of
// depth, and the cone where it stands. The page is drawn once; a frame draws rods and cone over it.
#pragma once

#include <QPixmap>
#include <QWidget>

#include "rig/ground_profile.h"
#include "rig/rig_state.h"

namespace penlog {

class ProfileView : public QWidget {
  Q_OBJECT

 public:
  explicit ProfileView(QWidget* parent);

  /// Another ground from now on.
  void Lay(const Ground& ground);
  /// Where the tip stands, m; draws only if a pixel changes.
  void SetDepth(double depth, double rod_length);
  /// The colours or the sizes are others.
  void DrawAnew();
  /// The part of the view that shows the ground; the scales stand below it, over no curve.
  QRect Picture() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void DrawPage();
  void DrawBands(QPainter& painter) const;
  void DrawSoils(QPainter& painter) const;
  void DrawCurves(QPainter& painter) const;
  void DrawDepths(QPainter& painter) const;
  void DrawLegend(QPainter& painter) const;
  void DrawRods(QPainter& painter) const;
  double Row(double depth) const;
  int WholeRow(double depth) const;
  /// A pixel of the window that the sizes were drawn for.
  int Unit() const;
  /// Width of the part with the rods.
  int Hole() const;

  Ground ground_;
  ProfileScales scales_;
  double depth_ = 0.0;
  double rod_length_ = 1.0;
  double top_ = 0.0;
  QPixmap page_;
  bool stale_ = true;
};

}  // namespace penlog
