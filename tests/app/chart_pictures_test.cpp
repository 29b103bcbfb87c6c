// The charts as they are painted against each of their segments drawn by itself.
#include <gtest/gtest.h>

#include <QFont>
#include <QImage>
#include <algorithm>
#include <cmath>
#include <random>

#include "display/graph_world.h"
#include "platform/qt/picture_canvas.h"

namespace penlog {
namespace {

const QSize kChart(97, 121);

/// Four charts with every kind of line: Qt, three pore pressures, water, a channel without a bar.
struct FourCharts : GraphWorld {
  explicit FourCharts(int rows) : GraphWorld({1, 2, 3, 22}) {
    settings.TipPlotValues = settings.CombinePPPlots = 1;
    session.WaterTable = 0.7F;
    channels.ChannelDistance(2) = 0.1F;
    channels.ChannelDistance(3) = 0.05F;
    std::mt19937 random(11);
    std::normal_distribution<float> noise(0, 1);
    for (int row = 1; row <= rows; ++row) {
      const float depth = 3.0F * static_cast<float>(row) / static_cast<float>(rows);
      const float layer = row / (rows / 5 + 1) % 2 == 0 ? 4.0F : 17.0F;
      AddRow(depth,
             {{1, layer + noise(random)},
              {2, 3 * layer + noise(random)},
              {3, 9 * depth - 4 + noise(random)},
              {4, 5 * depth},
              {5, 20 - layer},
              {22, 30 + 8 * noise(random)}},
             layer + 1);
    }
    for (int g = 1; g <= 4; ++g) RebuildRange(g);
    GraphData();
  }

  static QImage Painted(int g, bool antialiased, double& pen) {
    Form form("ChartTest", "");
    Picture picture(form, "pct");
    for (const GraphSegment& segment : AllSegments(g)) {
      picture.DrawSegment(static_cast<int>(segment.series), segment.colour, segment.from,
                          segment.to);
    }
    PictureCanvas canvas(antialiased);
    canvas.SetSize(kChart, 1);
    canvas.Follow(picture, QFont());
    pen = canvas.Pen();
    return canvas.Image();
  }
};

double Distance2(const QPointF& place, const QPointF& from, const QPointF& to) {
  const QPointF way = to - from;
  const double length2 = QPointF::dotProduct(way, way);
  const double along = length2 > 0 ? QPointF::dotProduct(place - from, way) / length2 : 0;
  const QPointF off = place - (from + way * std::clamp(along, 0.0, 1.0));
  return QPointF::dotProduct(off, off);
}

/// Marks each sample that the pen covers on the way of a segment, `fine` samples to a pixel.
void Cover(std::vector<char>& samples, const GraphSegment& segment, double pen, int fine) {
  const int wide = kChart.width() * fine;
  const int high = kChart.height() * fine;
  const QPointF from(static_cast<double>(segment.from.x) * wide,
                     static_cast<double>(segment.from.y) * high);
  const QPointF to(static_cast<double>(segment.to.x) * wide,
                   static_cast<double>(segment.to.y) * high);
  const double reach = pen * fine / 2;
  const auto first = [&](double place) { return std::max(0, static_cast<int>(place - reach) - 1); };
  const auto end = [&](double place, int most) {
    return std::clamp(static_cast<int>(place + reach) + 2, 0, most);
  };
  for (int y = first(std::min(from.y(), to.y())); y < end(std::max(from.y(), to.y()), high); ++y) {
    const int last = end(std::max(from.x(), to.x()), wide);
    for (int x = first(std::min(from.x(), to.x())); x < last; ++x) {
      if (Distance2({x + 0.5, y + 0.5}, from, to) > reach * reach) continue;
      samples[static_cast<std::size_t>(y) * static_cast<std::size_t>(wide) +
              static_cast<std::size_t>(x)] = 1;
    }
  }
}

/// Lays what is covered over the image; with one sample a pixel there is nothing between.
void LayOver(QImage& image, const std::vector<char>& samples, const QColor& colour, int fine) {
  const auto wide = static_cast<std::size_t>(kChart.width() * fine);
  for (int y = 0; y < kChart.height(); ++y) {
    for (int x = 0; x < kChart.width(); ++x) {
      int count = 0;
      for (int sub = 0; sub < fine * fine; ++sub) {
        const auto row = static_cast<std::size_t>(y * fine + sub / fine);
        count += samples[row * wide + static_cast<std::size_t>(x * fine + sub % fine)];
      }
      const double share = static_cast<double>(count) / (fine * fine);
      const QColor below = image.pixelColor(x, y);
      const auto mixed = [&](int under, int over) {
        return static_cast<int>(std::lround(under + (over - under) * share));
      };
      image.setPixelColor(
          x, y,
          QColor(mixed(below.red(), colour.red()), mixed(below.green(), colour.green()),
                 mixed(below.blue(), colour.blue())));
    }
  }
}

QImage EachSegment(int g, double pen, int fine) {
  QImage image(kChart, QImage::Format_RGB32);
  image.fill(Look().readout_ground);
  const auto all = AllSegments(g);
  for (int series = 0; series <= static_cast<int>(GraphSeries::PorePressure5); ++series) {
    std::vector<char> samples(
        static_cast<std::size_t>(kChart.width() * fine * kChart.height() * fine));
    QColor colour;
    for (const GraphSegment& segment : all) {
      if (static_cast<int>(segment.series) != series) continue;
      colour = Shown(segment.colour);
      Cover(samples, segment, pen, fine);
    }
    if (colour.isValid()) LayOver(image, samples, colour, fine);
  }
  return image;
}

int MostDifference(const QImage& one, const QImage& other) {
  int most = 0;
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x) {
      const QColor a = one.pixelColor(x, y);
      const QColor b = other.pixelColor(x, y);
      most = std::max({most, std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                       std::abs(a.blue() - b.blue())});
    }
  }
  return most;
}

TEST(ChartPictures, WithoutAntialiasingNoPixelDiffersFromTheSegmentsOneByOne) {
  for (const int rows : {60, 1500}) {
    const FourCharts charts(rows);
    for (int g = 1; g <= 4; ++g) {
      double pen = 0;
      const QImage painted = FourCharts::Painted(g, false, pen);
      EXPECT_EQ(MostDifference(painted, EachSegment(g, pen, 1)), 0) << g << ", rows " << rows;
    }
  }
}

TEST(ChartPictures, WithAntialiasingNoPixelDiffersMuch) {
  for (const int rows : {60, 1500}) {
    const FourCharts charts(rows);
    for (int g = 1; g <= 4; ++g) {
      double pen = 0;
      const QImage painted = FourCharts::Painted(g, true, pen);
      EXPECT_LE(MostDifference(painted, EachSegment(g, pen, 8)), 64) << g << ", rows " << rows;
    }
  }
}

}  // namespace
}  // namespace penlog
