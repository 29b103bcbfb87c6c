#include "platform/printer.h"

namespace penlog {

namespace {
Printer* printer_in_use = nullptr;
}

Printer* ThePrinter() { return printer_in_use; }

void UsePrinter(Printer* printer) { printer_in_use = printer; }

}  // namespace penlog
