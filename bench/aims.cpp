#include "bench/aims.h"

#include <QCoreApplication>
#include <chrono>
#include <cmath>
#include <ctime>
#include <optional>
#include <vector>

#include "platform/numbers.h"

namespace penlog {

namespace {

struct Figure {
  std::string name;
  double measured = 0;
  std::string unit;
  std::optional<double> aim;
  Better better = Better::Larger;
};

std::vector<Figure>& Figures() {
  static std::vector<Figure> figures;
  return figures;
}

void Keep(const Figure& figure) {
  for (Figure& kept : Figures()) {
    if (kept.name != figure.name) continue;
    kept = figure;
    return;
  }
  Figures().push_back(figure);
}

/// Three digits that count.
std::string Short(double number) {
  if (std::abs(number) >= 100) return Format(number, "#,##0");
  return Format(number, std::abs(number) >= 10 ? "0.0" : std::abs(number) >= 1 ? "0.00" : "0.000");
}

std::string Left(std::string text, std::size_t width) {
  text.resize(std::max(width, text.size()), ' ');
  return text;
}

}  // namespace

void ReportFigure(const std::string& name, double measured, const std::string& unit, double aim,
                  Better better) {
  Keep({name, measured, unit, aim, better});
}

void ReportFigure(const std::string& name, double measured, const std::string& unit) {
  Keep({name, measured, unit, std::nullopt, Better::Larger});
}

std::string FigureTable() {
  std::string table =
      Left("figure", 52) + RightField("measured", 12) + RightField("aim", 12) + "  times  unit\n";
  for (const Figure& figure : Figures()) {
    table += Left(figure.name, 52) + RightField(Short(figure.measured), 12);
    std::string aim;
    std::string times;
    if (figure.aim) {
      aim = Short(*figure.aim);
      const double ratio = figure.better == Better::Larger ? figure.measured / *figure.aim
                                                           : *figure.aim / figure.measured;
      times = Short(ratio);
    }
    table += RightField(aim, 12) + RightField(times, 7) + "  " + figure.unit + "\n";
  }
  return table;
}

double ProcessorSeconds() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

double RealSeconds() {
  const auto since = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double>(since).count();
}

std::string BenchFolder() {
  return QCoreApplication::applicationDirPath().toStdString() + "/../bench-run";
}

}  // namespace penlog
