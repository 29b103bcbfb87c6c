#include "platform/qt/qt_printer.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPageLayout>
#include <QPrinter>
#include <QPrinterInfo>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/runtime_fault.h"

namespace penlog {

namespace {

constexpr double kPointsPerInch = 72;

void SetUp(QPrinter& printer, const std::string& pdf_file) {
  if (!pdf_file.empty()) {
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QString::fromStdString(pdf_file));
  }
  printer.setFullPage(true);
}

QSizeF PageSize(const std::string& pdf_file) {
  QPrinter printer(QPrinter::HighResolution);
  SetUp(printer, pdf_file);
  return printer.pageLayout().fullRect(QPageLayout::Point).size();
}

}  // namespace

QtPrinter::QtPrinter(std::string pdf_file) : pdf_file_(std::move(pdf_file)) {}

void QtPrinter::SetFont(const std::string& family, double size, bool bold) {
  family_ = family;
  size_ = size;
  bold_ = bold;
}

// One pixel of the font is one point: the painter is scaled so, and the metrics don't depend on a
// device.
QFont QtPrinter::Font() const {
  QFont font(QString::fromStdString(family_));
  font.setStyleHint(QFont::Monospace);
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(size_))));
  font.setBold(bold_);
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

double QtPrinter::TextWidth(const std::string& text) {
  return QFontMetricsF(Font()).horizontalAdvance(QString::fromStdString(text));
}

double QtPrinter::TextHeight() {
  return QFontMetricsF(Font()).height();
}

void QtPrinter::Text(double x, double y, const std::string& text) {
  const double baseline = y + QFontMetricsF(Font()).ascent();
  pages_.back().push_back(
      [x, baseline, font = Font(), shown = QString::fromStdString(text)](QPainter& painter) {
        painter.setFont(font);
        painter.drawText(QPointF(x, baseline), shown);
      });
}

void QtPrinter::Line(double x1, double y1, double x2, double y2) {
  pages_.back().push_back([line = QLineF(x1, y1, x2, y2)](QPainter& painter) {
    painter.setPen(QPen(Qt::black, 0.5));
    painter.drawLine(line);
  });
}

void QtPrinter::Picture(const std::string& path, double x, double y, double width, double height) {
  const QImage image(QString::fromStdString(path));
  if (image.isNull()) throw RuntimeFault(path + ": the picture can't be read");
  pages_.back().push_back([image, place = QRectF(x, y, width, height)](QPainter& painter) {
    painter.drawImage(place, image);
  });
}

double QtPrinter::PageWidth() {
  return PageSize(pdf_file_).width();
}

double QtPrinter::PageHeight() {
  return PageSize(pdf_file_).height();
}

void QtPrinter::NewPage() {
  pages_.emplace_back();
}

void QtPrinter::EndDocument() {
  const auto pages = std::exchange(pages_, std::vector<Page>(1));
  if (pdf_file_.empty() && QPrinterInfo::defaultPrinter().isNull()) {
    throw RuntimeFault("There is no printer");
  }
  Draw(pages);
}

void QtPrinter::Draw(const std::vector<Page>& pages) const {
  QPrinter printer(QPrinter::HighResolution);
  SetUp(printer, pdf_file_);
  QPainter painter;
  if (!painter.begin(&printer)) {
    throw RuntimeFault(pdf_file_.empty() ? "The printer takes nothing"
                                         : pdf_file_ + ": can't be written");
  }
  const double scale = printer.resolution() / kPointsPerInch;
  painter.scale(scale, scale);
  bool first = true;
  for (const Page& page : pages) {
    if (!std::exchange(first, false) && !printer.newPage()) {
      throw RuntimeFault("The printer takes no further page");
    }
    for (const Step& step : page) step(painter);
  }
  if (!painter.end()) throw RuntimeFault("The printer did not finish");
}

}  // namespace penlog
