#include "rig/ground_files.h"

#include "platform/files.h"
#include "platform/texts.h"
#include "rig/csv_text.h"
#include "rig/gef_text.h"

namespace penlog {

Ground GroundFromText(std::string_view bytes, const std::string& name) {
  const std::string text = FromFileBytes(bytes);
  const std::string_view start = Trim(std::string_view(text).substr(0, 400));
  return Ground(StartsWith(start, "#") ? ParseGef(text, name) : ParseGroundCsv(text, name));
}

Ground LoadGround(const std::string& path) {
  return GroundFromText(ReadFile(path), path);
}

}  // namespace penlog
