#include "sounding/resumed_marks.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "core/message.h"
#include "core/session.h"
#include "core/settings.h"
#include "platform/boxes.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/small_file.h"
#include "platform/texts.h"
#include "sounding/held_rows.h"
#include "sounding/row_text.h"
#include "sounding/sounding_files.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr int kHeaderLines = 2;

float SecondsNow() {
  return static_cast<float>(SecondsSinceMidnight(TheClock().Wall()));
}

/// A depth, m, and the seconds since midnight.
bool IsMark(std::string_view line) {
  const std::size_t blank = line.find(' ');
  return blank != line.npos && WholeNumberText(line.substr(0, blank)) &&
         WholeNumberText(line.substr(blank));
}

/// What a start that was cut off may have left of the head.
bool IsPartOfHead(std::string_view text) {
  const std::string head = TimHeader(0);
  const std::string_view title = std::string_view(head).substr(0, head.find('\n') + 1);
  if (text.size() <= title.size()) return title.starts_with(text);
  return text.starts_with(title) &&
         text.find_first_not_of(" 0123456789.\r", title.size()) == text.npos;
}

/// A `.tim` file taken apart.
struct FoundTim {
  std::string text;        ///< as it stands
  std::string whole;       ///< as it should be
  std::int32_t marks = 0;  ///< of these
  bool is_torn = false;    ///< text without a line end stands at the end
  bool has_head = true;    ///< or marks, as without a `.tim` file of the start
};

FoundTim ReadTim(const std::string& text) {
  FoundTim tim;
  tim.text = text;
  int lines = 0;
  std::string_view rest = text;
  for (std::size_t end = rest.find('\n'); end != rest.npos; end = rest.find('\n')) {
    const std::string_view line = rest.substr(0, end + 1);
    rest.remove_prefix(end + 1);
    ++lines;
    if (IsMark(line)) ++tim.marks;
    tim.whole += line;
  }
  tim.is_torn = !rest.empty();
  tim.has_head = lines >= kHeaderLines || tim.marks > 0;
  if (!tim.has_head) tim.whole = TimHeader(SecondsNow());
  return tim;
}

/// What was done, for the operator, and where the file of before is kept. Both outlast an attempt
/// that the disk refused: the next one may find all done.
struct TimMending {
  std::string told;
  std::string beside;
};

std::string WhatWasDone(const FoundTim& tim, bool stands) {
  const std::string& path = PathOf(kTimFile);
  if (!tim.has_head) {
    return "THE FILE OF THE TIME MARKS " + path + (stands ? " HAS NO WHOLE HEAD" : " IS MISSING") +
           ".  IT IS BEGUN ANEW, WITHOUT MARKS OF BEFORE.";
  }
  return "AN UNFINISHED TIME MARK WAS TAKEN OUT OF " + path + ".";
}

/// What is no `.tim` file is kept beside.
void KeepTim(const FoundTim& tim, TimMending& mending) {
  const bool loses = !tim.has_head && !IsPartOfHead(tim.text);
  if (!loses || !mending.beside.empty()) return;
  const std::string beside = FreeNameBeside(PathOf(kTimFile));
  CopyFile(PathOf(kTimFile), beside);
  mending.beside = beside;
}

void TakeUpTimFile(bool was_refused, TimMending& mending) {
  const std::string& path = PathOf(kTimFile);
  const bool stands = TheDisk().FileExists(path);
  if (!stands && !HasTimFile()) return;
  const FoundTim tim = ReadTim(stands ? ReadSmallFile(path) : "");
  if (tim.whole == tim.text && !was_refused) {
    SettleFile(path);
  } else {
    KeepTim(tim, mending);
    if (tim.whole != tim.text) mending.told = WhatWasDone(tim, stands);
    ReplaceFile(path, tim.whole);
  }
  StartFile(kTimFile, tim.whole);
  sounding.PictureCount = tim.marks;
}

/// Tries until it works; false where the operator goes on without the file.
bool TakesUpTimFile(TimMending& mending) {
  for (bool was_refused = false;; was_refused = true) {
    try {
      TakeUpTimFile(was_refused, mending);
      return true;
    } catch (const std::exception& fault) {
      if (MsgBox("THE FILE OF THE TIME MARKS CANNOT BE TAKEN UP AGAIN.  PRESS OK TO TRY AGAIN, OR "
                 "CANCEL TO GO ON WITHOUT IT: WHAT STANDS THERE STAYS, AND THE MARKS OF THIS "
                 "SESSION ARE NOT KEPT.  " +
                     std::string(fault.what()),
                 BoxButtons::OkCancel) == BoxAnswer::Cancel) {
        return false;
      }
    }
  }
}

}  // namespace

void MendTimFile() {
  sounding.PictureCount = 0;
  if (sounding.Held[kTimFile].GivenUp) return;  // another sounding's stands under its name
  TimMending mending;
  if (!TakesUpTimFile(mending)) return GiveUpFile(kTimFile);
  if (mending.told.empty()) return;
  const std::string& beside = mending.beside;
  Tell(mending.told + (beside.empty() ? "" : "  THE FILE OF BEFORE IS KEPT AS " + beside + "."));
}

}  // namespace penlog
