#include "adapters/qt/Accelerators.h"

#include <QSet>
#include <algorithm>

namespace kartix::adapters::qt {
namespace {

/// Letters that every keyboard has.
bool usable(QChar c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); }

bool beginsWord(const QString& caption, qsizetype at) { return at == 0 || !caption[at - 1].isLetterOrNumber(); }

QChar choose(const QString& caption, const QSet<QChar>& taken) {
  for (const bool wordsOnly : {true, false}) {
    for (qsizetype i = 0; i < caption.size(); ++i) {
      if (wordsOnly && !beginsWord(caption, i)) continue;
      if (usable(caption[i]) && !taken.contains(caption[i].toUpper())) return caption[i];
    }
  }
  return {};
}

/// Where `letter` is marked: at the beginning of a word if it stands there.
qsizetype place(const QString& caption, QChar letter) {
  for (qsizetype i = 0; i < caption.size(); ++i) {
    if (caption[i] == letter && beginsWord(caption, i)) return i;
  }
  return caption.indexOf(letter);
}

}  // namespace

std::vector<QChar> chooseAccelerators(const QStringList& captions) {
  std::vector<QChar> letters;
  QSet<QChar> taken;
  for (const QString& caption : captions) {
    const QChar letter = choose(caption, taken);
    letters.push_back(letter);
    if (!letter.isNull()) taken.insert(letter.toUpper());
  }
  return letters;
}

QString withAccelerator(const QString& caption, QChar letter) {
  QString text = caption;
  const qsizetype at = letter.isNull() ? -1 : place(caption, letter);
  text.replace(u'&', QStringLiteral("&&"));
  if (at >= 0) text.insert(at + caption.left(at).count(u'&'), u'&');
  return text;
}

}  // namespace kartix::adapters::qt
