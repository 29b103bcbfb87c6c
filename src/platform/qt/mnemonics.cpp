#include "platform/qt/mnemonics.h"

namespace penlog {

namespace {

bool BeginsWord(const QString& caption, qsizetype at) {
  return at == 0 || !caption[at - 1].isLetterOrNumber();
}

/// Where the letter stands that gets the mark; -1 for none.
qsizetype PlaceFor(const QString& caption, const QString& taken) {
  for (const bool first_letters : {true, false}) {
    for (qsizetype i = 0; i < caption.size(); ++i) {
      const QChar letter = caption[i].toUpper();
      if (!letter.isLetterOrNumber() || taken.contains(letter)) continue;
      if (!first_letters || BeginsWord(caption, i)) return i;
    }
  }
  return -1;
}

}  // namespace

std::vector<QString> WithMnemonics(const std::vector<QString>& captions, const QString& taken) {
  QString used = taken.toUpper();
  std::vector<QString> marked;
  for (const QString& caption : captions) {
    const qsizetype place = PlaceFor(caption, used);
    QString head = caption.left(std::max<qsizetype>(place, 0));
    QString rest = caption.mid(std::max<qsizetype>(place, 0));
    if (place >= 0) used += caption[place].toUpper();
    marked.push_back(head.replace("&", "&&") + (place >= 0 ? "&" : "") + rest.replace("&", "&&"));
  }
  return marked;
}

QString WithoutMnemonic(const QString& text) {
  QString plain;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text[i] == '&' && ++i == text.size()) break;
    plain += text[i];
  }
  return plain;
}

QChar MnemonicOf(const QString& text) {
  for (qsizetype i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != '&') continue;
    if (text[i + 1] != '&') return text[i + 1].toUpper();
    ++i;
  }
  return {};
}

}  // namespace penlog
