// Paper, or a PDF file instead.
#pragma once

#include <QFont>
#include <QPainter>
#include <functional>
#include <string>
#include <vector>

#include "platform/printer.h"

namespace penlog {

/// The steps of a document are kept and drawn at its end, so that a missing printer or a full disk
/// fails there, and leaves the printer ready for the next document. Its use, not its making, needs
/// a QGuiApplication.
class QtPrinter : public Printer {
 public:
  /// Prints on the default printer, or writes each document to `pdf_file` if one is named.
  explicit QtPrinter(std::string pdf_file = {});

  void SetFont(const std::string& family, double size, bool bold) override;
  double TextWidth(const std::string& text) override;
  double TextHeight() override;
  void Text(double x, double y, const std::string& text) override;
  void Line(double x1, double y1, double x2, double y2) override;
  void Picture(const std::string& path, double x, double y, double width, double height) override;
  double PageWidth() override;
  double PageHeight() override;
  void NewPage() override;
  void EndDocument() override;

 private:
  using Step = std::function<void(QPainter&)>;
  using Page = std::vector<Step>;

  void Draw(const std::vector<Page>& pages) const;

  QFont Font() const;

  std::string pdf_file_;
  std::string family_ = "Courier New";
  double size_ = 10;
  bool bold_ = false;
  std::vector<Page> pages_{1};
};

}  // namespace penlog
