// A sounding that was suspended, and a console whose cone has answered. What the files must hold is
// written here by hand, by the forms in docs/files.md, and not by the console's own writer.
#pragma once

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <vector>

#include "core/box_answers.h"
#include "core/resume.h"
#include "core/settings_replaced.h"
#include "platform/numbers.h"
#include "sounding/console.h"
#include "sounding/resumed_files.h"
#include "sounding/sounding_files.h"
#include "support/temporary_lines.h"

namespace penlog {

using Texts = std::vector<std::string>;

inline constexpr const char* kTemporary = "/data/TemporaryData.txt";
inline constexpr const char* kCpt = "/data/s.cpt";
inline constexpr const char* kTim = "/data/s.tim";
inline constexpr int kLag = 3;

/// Rows that channels 1, 2 and 3 lag behind the tip.
inline constexpr std::array<int, 3> kDelays = {0, kLag, 1};

inline std::string Aligned(const std::string& text, std::size_t width) {
  return std::string(text.size() < width ? width - text.size() : 0, ' ') + text;
}

inline std::string Column(const Texts& fields) {
  std::string line(13, ' ');
  for (const auto& field : fields) line += StoredField(field);
  return line + "\r\n";
}

/// The head as the console of another day left it.
inline std::string Head(bool new_form, const Texts& numbers = {"1", "2", "3"},
                        const std::string& cone_id = "DSE1234",
                        const std::string& date = "2026-06-15 09:30:00") {
  std::string text =
      new_form ? "KQ Sounding File ver. 2015.07.02.1\r\n" : "Dravenholtz Sounding File\r\n";
  for (const std::string& line : Texts{"Company, Ltd.", "Oper", cone_id, "Loc", "Job", "Hole", date,
                                       "Head", "Foot1", "Foot2", "GPS", " 1.5 ", "", ""}) {
    text += line + "\r\n";
  }
  text += Column(numbers) + Column({"C1", "C2", "C3"}) + Column({"1", "1", "1"}) +
          Column({"0.25310", "0.29880", "0.50070"}) + Column({"1 u1", "1 u2", "1 u3"}) +
          Column({"u1", "u2", "u3"}) + Column({"1", "1", "1"});
  return text + (new_form ? "    (m)(cm/s)\r\n" : "   (m) (cm/s)\r\n");
}

/// `mm` as metres with `places` decimals.
inline std::string MetresOf(int mm, int places) {
  const std::string sign = mm < 0 ? "-" : "";
  const int all = std::abs(mm);
  const std::string decimals = std::to_string(1000 + all % 1000).substr(1);
  return sign + std::to_string(all / 1000) + "." +
         decimals.substr(0, static_cast<std::size_t>(places));
}

inline std::string DepthAndSpeed(bool new_form, int mm, const std::string& speed) {
  return new_form ? Aligned(MetresOf(mm, 3), 7) + Aligned(speed, 6)
                  : Aligned(MetresOf(mm, 2), 6) + Aligned(speed, 7);
}

/// Row n of the `.cpt` file: each channel from the row where its sensor passed, the speed of the
/// row that made it complete.
inline std::string CptRow(int n, bool new_form = true, int sign = 1) {
  std::string row = DepthAndSpeed(new_form, sign * 20 * n, StoredSpeed(n + kLag));
  for (int channel = 1; channel <= 3; ++channel) {
    row += StoredField(StoredValue(channel, n + kDelays[static_cast<std::size_t>(channel - 1)]));
  }
  return row + "\r\n";
}

inline std::string CptRows(int last, bool new_form = true, int sign = 1) {
  std::string text;
  for (int n = 1; n <= last; ++n) text += CptRow(n, new_form, sign);
  return text;
}

inline constexpr int kRows = 12;
inline constexpr int kAligned = kRows - kLag;

inline std::string WholeCpt(bool new_form = true) {
  return Head(new_form) + CptRows(kAligned, new_form);
}

/// A console whose cone has answered, with the sounding of `kRows` rows read back.
struct TakenUp : Console {
  explicit TakenUp(const std::string& temporary = JoinedLines(StoredLines(kRows))) {
    replaced_settings = {};
    settings.DepthResolution = 0.005F;
    settings.DepthStepCounts = 4;
    disk.Put(kTemporary, temporary);
    disk.Put(kCpt, WholeCpt());
  }
  ~TakenUp() { DropCalls(this); }

  void ReadBack() {
    StartUp_cmdResume_Click();
    boxes.texts.clear();
    // As the cone's memory tells it.
    for (int channel = 1; channel <= 3; ++channel) {
      channels.ChannelDelayRows(channel) =
          static_cast<std::int16_t>(kDelays[static_cast<std::size_t>(channel - 1)]);
      channels.RecordMode(channel) = 0;
    }
    cone.DelayRows = 99;
  }
  void TakeUp() {
    ReadBack();
    TakeUpSounding();
  }
  /// The next row of the sounding, as a pass records it; channels read as their file tells.
  static void Row() {
    const int n = ++sounding.RowCount;
    sounding.CurrentDepth = 0.02F * static_cast<float>(n);
    sounding.RowSpeed(n - 1) = ParseSingle(StoredSpeed(n));
    for (int channel = 1; channel <= 3; ++channel) {
      sounding.Readings(channel) = ParseSingle(StoredValue(channel, n));
    }
    RecordRow();
  }
  std::string File(const std::string& path) { return disk.Read(path); }
  bool Has(const std::string& path) { return disk.FileExists(path); }
  /// Answers each file dialog with the next path; the last one again and again.
  void ChooseFile(Texts paths) {
    choices_ = std::move(paths);
    Look();
  }
  bool WasTold(const std::string& part) const {
    return std::any_of(boxes.texts.begin(), boxes.texts.end(), [&](const std::string& text) {
      return text.find(part) != std::string::npos;
    });
  }

  BoxAnswers boxes;
  int dialogs = 0;

 private:
  void Look() {
    PostCall(
        Now() + kMillisecond, this,
        [this] {
          if (const FileDialog* dialog = OpenFileDialog();
              dialog != nullptr && dialog->id != last_) {
            last_ = dialog->id;
            ++dialogs;
            AnswerFileDialog(dialog->id, choices_.front());
            if (choices_.size() > 1) choices_.erase(choices_.begin());
          }
          Look();
        },
        EventKind::RepeatingCall);
  }

  Texts choices_;
  int last_ = 0;
};

}  // namespace penlog
