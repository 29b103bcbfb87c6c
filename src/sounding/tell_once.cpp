#include "sounding/tell_once.h"

#include "platform/boxes.h"
#include "sounding/sounding_state.h"

namespace penlog {

void TellOnce(const std::string& text) {
  if (sounding.Told.insert(text).second) PostBox(text);
}

}  // namespace penlog
