#pragma once

#include <QChar>
#include <QStringList>
#include <vector>

namespace kartix::adapters::qt {

/// Chooses a letter of each caption that, together with Alt, reaches its control: the first of a word rather than one
/// inside, no letter twice, earlier captions first. A null character where no letter is left.
std::vector<QChar> chooseAccelerators(const QStringList& captions);

/// The caption as buttons and labels take it, with the letter marked.
QString withAccelerator(const QString& caption, QChar letter);

}  // namespace kartix::adapters::qt
