// A trace as its scan lines hold it, against the drawing of each of its segments.
#include "platform/qt/trace_cover.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <vector>

namespace penlog {
namespace {

using Points = std::vector<QPointF>;

constexpr int kWidth = 90;
constexpr int kHeight = 150;

QImage Black(int width, int height) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(Qt::black);
  return image;
}

QImage Envelope(const Points& points, int width, int height, double pen, int lines) {
  QImage image = Black(width, height);
  TraceCover cover(pen, lines);
  for (std::size_t i = 1; i < points.size(); ++i) cover.Add(points[i - 1], points[i], height);
  cover.Paint(image, {0, height}, Qt::white);
  return image;
}

/// Square of the distance from a place to a segment.
double Distance2(const QPointF& place, const QPointF& from, const QPointF& to) {
  const QPointF way = to - from;
  const double length2 = QPointF::dotProduct(way, way);
  const double along = length2 > 0 ? QPointF::dotProduct(place - from, way) / length2 : 0;
  const QPointF off = place - (from + way * std::clamp(along, 0.0, 1.0));
  return QPointF::dotProduct(off, off);
}

/// Each segment drawn by itself without antialiasing: the pixels whose centre the pen covers.
QImage EachSegment(const Points& points, int width, int height, double pen) {
  QImage image = Black(width, height);
  const double reach = pen / 2;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const QPointF& from = points[i - 1];
    const QPointF& to = points[i];
    const auto low = [&](double place) { return std::max(0, static_cast<int>(place - reach) - 1); };
    const auto high = [&](double place, int most) {
      return std::min(most, static_cast<int>(place + reach) + 2);
    };
    for (int y = low(from.y()); y < high(to.y(), height); ++y) {
      const int last = high(std::max(from.x(), to.x()), width);
      for (int x = low(std::min(from.x(), to.x())); x < last; ++x) {
        if (Distance2({x + 0.5, y + 0.5}, from, to) <= reach * reach) {
          reinterpret_cast<QRgb*>(image.scanLine(y))[x] = qRgb(255, 255, 255);
        }
      }
    }
  }
  return image;
}

/// The same with antialiasing: 64 samples a pixel. (Qt's own stroke is no measure: where a trace
/// turns sharply it is off by more than half a pixel.)
QImage EachSegmentFine(const Points& points, int width, int height, double pen) {
  constexpr int kFine = 8;
  Points large;
  for (const QPointF& point : points) large.push_back(point * kFine);
  const QImage fine = EachSegment(large, width * kFine, height * kFine, pen * kFine);
  QImage image = Black(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      int lit = 0;
      for (int line = 0; line < kFine; ++line) {
        const auto* samples = reinterpret_cast<const QRgb*>(fine.constScanLine(y * kFine + line));
        lit += static_cast<int>(std::count_if(samples + x * kFine, samples + (x + 1) * kFine,
                                              [](QRgb sample) { return qRed(sample) > 0; }));
      }
      const int share = lit * 255 / (kFine * kFine);
      image.setPixel(x, y, qRgb(share, share, share));
    }
  }
  return image;
}

struct Differences {
  int pixels = 0;
  int most = 0;
};

Differences Compare(const QImage& one, const QImage& other) {
  Differences found;
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x) {
      const int off = std::abs(qRed(one.pixel(x, y)) - qRed(other.pixel(x, y)));
      found.pixels += off != 0 ? 1 : 0;
      found.most = std::max(found.most, off);
    }
  }
  return found;
}

struct Course {
  const char* name;
  std::function<double(int row, std::mt19937& random)> across;  // 0 to 1
};

/// Values as the ground gives them, and worse ones.
const std::vector<Course>& Courses() {
  static const std::vector<Course> courses = {
      {"layers",
       [](int row, std::mt19937& random) {
         std::normal_distribution<double> noise(0, 0.01);
         return 0.1 + 0.17 * (row / 700 * 7 % 5) + noise(random);
       }},
      {"smooth", [](int row, std::mt19937&) { return 0.5 + 0.45 * std::sin(row / 300.0); }},
      {"noise over the whole width",
       [](int, std::mt19937& random) { return std::uniform_real_distribution<>(0, 1)(random); }},
      {"spikes past both edges",
       [](int row, std::mt19937&) { return row % 97 == 0 ? (row % 2 ? 3.0 : -2.0) : 0.3; }},
      {"upright", [](int, std::mt19937&) { return 0.37; }},
  };
  return courses;
}

Points Made(const Course& course, int rows, int width, int height) {
  std::mt19937 random(7);
  Points points;
  for (int row = 0; row < rows; ++row) {
    points.emplace_back(course.across(row, random) * width + 0.0137,
                        (row + 0.317) * height / rows + 0.0071);
  }
  return points;
}

TEST(TraceCover, WithoutAntialiasingNoPixelDiffersFromTheFullDrawing) {
  for (const Course& course : Courses()) {
    for (const int rows : {10'000, 400, 30}) {
      for (const double pen : {1.0, 1.5, 3.0}) {
        const Points points = Made(course, rows, kWidth, kHeight);
        const Differences found = Compare(Envelope(points, kWidth, kHeight, pen, 1),
                                          EachSegment(points, kWidth, kHeight, pen));
        EXPECT_EQ(found.pixels, 0) << course.name << ", rows " << rows << ", pen " << pen;
      }
    }
  }
}

TEST(TraceCover, WithAntialiasingNoPixelDiffersMuchFromTheFullDrawing) {
  for (const Course& course : Courses()) {
    for (const int rows : {1500, 400, 30}) {
      for (const double pen : {1.5, 3.0}) {
        const Points points = Made(course, rows, kWidth, kHeight);
        const Differences found = Compare(Envelope(points, kWidth, kHeight, pen, kLinesPerPixel),
                                          EachSegmentFine(points, kWidth, kHeight, pen));
        EXPECT_LE(found.most, 64) << course.name << ", rows " << rows << ", pen " << pen;
      }
    }
  }
}

TEST(TraceCover, TenThousandRowsDifferNoMore) {
  const Points points = Made(Courses()[0], 10'000, kWidth, kHeight);
  const Differences found = Compare(Envelope(points, kWidth, kHeight, 1.5, kLinesPerPixel),
                                    EachSegmentFine(points, kWidth, kHeight, 1.5));
  EXPECT_LE(found.most, 64);
}

TEST(TraceCover, SmoothTraceIsThePaintersOwnStroke) {
  for (const int rows : {1500, 30}) {
    const Points points = Made(Courses()[1], rows, kWidth, kHeight);
    QImage image = Black(kWidth, kHeight);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::white, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(points.data(), static_cast<int>(points.size()));
    painter.end();
    const QImage envelope = Envelope(points, kWidth, kHeight, 1.5, kLinesPerPixel);
    EXPECT_LE(Compare(envelope, image).most, 64) << rows;
  }
}

TEST(TraceCover, SegmentsOneByOneGiveThePictureOfAll) {
  const Points points = Made(Courses()[0], 2000, kWidth, kHeight);
  QImage grown = Black(kWidth, kHeight);
  const QImage ground = grown;
  TraceCover cover(1.5, kLinesPerPixel);
  for (std::size_t i = 1; i < points.size(); ++i) {
    const PixelRows rows = cover.Add(points[i - 1], points[i], kHeight);
    for (int row = rows.first; row < rows.last; ++row) {
      std::copy_n(ground.constScanLine(row), ground.bytesPerLine(), grown.scanLine(row));
    }
    cover.Paint(grown, rows, Qt::white);
  }
  EXPECT_EQ(Compare(grown, Envelope(points, kWidth, kHeight, 1.5, kLinesPerPixel)).pixels, 0);
}

TEST(TraceCover, NamesTheRowsThatItTouches) {
  TraceCover cover(2, kLinesPerPixel);
  const PixelRows rows = cover.Add({10, 20.5}, {40, 22.5}, 100);
  EXPECT_EQ(rows.first, 19);
  EXPECT_EQ(rows.last, 24);
  EXPECT_TRUE(cover.Add({10, 120}, {10, 130}, 100).IsEmpty());
}

TEST(TraceCover, WhatLiesOutsideIsLeftOut) {
  TraceCover cover(2, kLinesPerPixel);
  cover.Add({-1e9, -50}, {1e9, -20}, 100);
  cover.Add({1e9, -20}, {1e9, 150}, 100);
  QImage image = Black(50, 100);
  cover.Paint(image, {0, 100}, Qt::white);
  EXPECT_EQ(Compare(image, Black(50, 100)).pixels, 0);
  EXPECT_TRUE(TraceCover(2, kLinesPerPixel).Add({5, -1e30}, {5, -1e20}, 100).IsEmpty());
}

}  // namespace
}  // namespace penlog
