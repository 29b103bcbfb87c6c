// One page after another on paper. Positions and sizes are in points (1/72 inch) from the upper
// left corner of the page.
#pragma once

#include <string>

namespace penlog {

class Printer {
 public:
  virtual ~Printer() = default;
  virtual void SetFont(const std::string& family, double size, bool bold) = 0;
  /// Width of a text in the font that is set.
  virtual double TextWidth(const std::string& text) = 0;
  virtual double TextHeight() = 0;
  virtual void Text(double x, double y, const std::string& text) = 0;
  virtual void Line(double x1, double y1, double x2, double y2) = 0;
  /// A picture file, scaled into the rectangle; raises a `RuntimeFault` if it can't be read.
  virtual void Picture(const std::string& path, double x, double y, double width,
                       double height) = 0;
  virtual double PageWidth() = 0;
  virtual double PageHeight() = 0;
  virtual void NewPage() = 0;
  /// Sends the pages; raises a `RuntimeFault` if there is no printer.
  virtual void EndDocument() = 0;
};

/// The printer in use; none before `UsePrinter`.
Printer* ThePrinter();
void UsePrinter(Printer* printer);

}  // namespace penlog
