#include "platform/qt/qt_printer.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include "platform/runtime_fault.h"

namespace penlog {
namespace {

struct PrinterTest : testing::Test {
  std::string Pdf() const { return folder.filePath("report.pdf").toStdString(); }
  QByteArray Printed() const {
    QFile file(folder.filePath("report.pdf"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  QTemporaryDir folder;
  QtPrinter printer{Pdf()};
};

TEST_F(PrinterTest, DocumentOfTwoPagesIsWrittenAtItsEnd) {
  printer.SetFont("Courier New", 14, true);
  printer.Text(72, 72, "CONE CALIBRATION REPORT");
  printer.Line(72, 90, 300, 90);
  printer.NewPage();
  printer.Text(72, 72, "second page");
  EXPECT_TRUE(Printed().isEmpty());
  printer.EndDocument();
  EXPECT_TRUE(Printed().startsWith("%PDF"));
  EXPECT_TRUE(Printed().contains("/Count 2")) << "two pages";
  EXPECT_TRUE(Printed().trimmed().endsWith("%%EOF"));
}

TEST_F(PrinterTest, NextDocumentStartsEmpty) {
  printer.NewPage();
  printer.NewPage();
  printer.EndDocument();
  EXPECT_TRUE(Printed().contains("/Count 3"));
  printer.Text(72, 72, "alone");
  printer.EndDocument();
  EXPECT_TRUE(Printed().contains("/Count 1"));
}

TEST_F(PrinterTest, SizesAreInPoints) {
  const bool a4 =
      std::abs(printer.PageWidth() - 595) < 2 && std::abs(printer.PageHeight() - 842) < 2;
  const bool letter =
      std::abs(printer.PageWidth() - 612) < 2 && std::abs(printer.PageHeight() - 792) < 2;
  EXPECT_TRUE(a4 || letter) << printer.PageWidth() << " x " << printer.PageHeight();
  printer.SetFont("Courier New", 10, false);
  EXPECT_GE(printer.TextHeight(), 9);
  EXPECT_LE(printer.TextHeight(), 20);
  const double one = printer.TextWidth("A");
  EXPECT_NEAR(printer.TextWidth("AAAAAAAAAA"), 10 * one, 0.5);
  printer.SetFont("Courier New", 20, false);
  EXPECT_NEAR(printer.TextWidth("A"), 2 * one, 0.5);
}

TEST_F(PrinterTest, PictureIsPartOfThePageAndAMissingOneIsAFault) {
  QImage image(40, 20, QImage::Format_RGB32);
  image.fill(Qt::red);
  const QString path = folder.filePath("logo.bmp");
  ASSERT_TRUE(image.save(path));
  printer.Picture(path.toStdString(), 100, 100, 200, 100);
  printer.EndDocument();
  EXPECT_TRUE(Printed().contains("/Subtype /Image"));
  EXPECT_THROW(printer.Picture(folder.filePath("missing.bmp").toStdString(), 0, 0, 1, 1),
               RuntimeFault);
}

TEST(QtPrinter, FileThatCannotBeWrittenIsAFaultAtTheEnd) {
  QtPrinter printer("/no/such/folder/report.pdf");
  printer.Text(10, 10, "lost");
  EXPECT_THROW(printer.EndDocument(), RuntimeFault);
}

}  // namespace
}  // namespace penlog
