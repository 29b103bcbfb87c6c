// What the measurements are judged by: each reports its figure with the aim that it was built for,
// and the table stands at the end of the run.
#pragma once

#include <string>

namespace penlog {

enum class Better { Larger, Smaller };

/// Keeps the figure; a later one of the same name replaces it.
void ReportFigure(const std::string& name, double measured, const std::string& unit, double aim,
                  Better better);
/// The same without an aim, for comparison.
void ReportFigure(const std::string& name, double measured, const std::string& unit);

/// The table: name, measured, aim and how many times better than the aim.
std::string FigureTable();

/// Seconds of processor time of this process, all its threads, and of real time.
double ProcessorSeconds();
double RealSeconds();

/// Where the measurements in real time write: a folder beside the program, on the real disk.
std::string BenchFolder();

}  // namespace penlog
