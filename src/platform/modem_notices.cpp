#include "platform/modem_notices.h"

#include "platform/telnet_com_port.h"

namespace penlog {

namespace {

ModemLines Different(ModemLines a, ModemLines b) {
  return {a.cts != b.cts, a.dsr != b.dsr, a.cd != b.cd};
}

int Unseen(ModemLines flagged, ModemLines differs) {
  return (flagged.cts && !differs.cts ? 1 : 0) + (flagged.dsr && !differs.dsr ? 1 : 0) +
         (flagged.cd && !differs.cd ? 1 : 0);
}

}  // namespace

ModemNotice ModemNotices::Take(std::uint8_t modem_state) {
  ModemNotice notice;
  notice.lines = LinesOf(modem_state);
  const ModemLines flagged = ChangesOf(modem_state);
  if (!known_) {
    known_ = true;
    lines_ = Different(notice.lines, flagged);
    notice.known = true;
    notice.known_lines = lines_;
  }
  notice.edge = notice.lines != lines_;
  notice.lost = Unseen(flagged, Different(notice.lines, lines_));
  lines_ = notice.lines;
  return notice;
}

void ModemNotices::TakeAtOpening(std::uint8_t modem_state) {
  known_ = true;
  lines_ = LinesOf(modem_state);
}

}  // namespace penlog
