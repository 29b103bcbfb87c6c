// Alt and a letter for each button. The captions stay as they are: the letters are the view's own.
#pragma once

#include <QString>
#include <vector>

namespace penlog {

/// The captions with a "&" before the letter of each, no letter twice and none of `taken`. The
/// first letters of words go first, then any letter or digit; a caption whose letters are all
/// taken stays without. A "&" of a caption is doubled.
std::vector<QString> WithMnemonics(const std::vector<QString>& captions, const QString& taken = {});
/// The caption again.
QString WithoutMnemonic(const QString& text);
/// The letter that is marked, in upper case; null for none.
QChar MnemonicOf(const QString& text);

}  // namespace penlog
