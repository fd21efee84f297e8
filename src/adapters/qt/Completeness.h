#pragma once

#include <QByteArray>

namespace kartix::adapters::qt {

/// Whether the file `bytes` of `format` ("jpeg", "png" or "bmp") goes on to its end. Decoders fill up with grey or
/// black what is missing. What follows the end is of no interest. Of any other format nothing is known: true.
bool isComplete(const QByteArray& format, const QByteArray& bytes);

}  // namespace kartix::adapters::qt
