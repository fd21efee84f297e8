#pragma once

#include <string>

#include "host/doctor/Finding.h"

namespace kartix::host {

class Installation;

/// Looks at an installation part by part. Nothing is changed but for files beside others that are made and taken away
/// again at once, and no window is shown. A fault whose cause has been named already is not named again.
/// `login` also logs in at the gateway, which may count a wrong password.
Findings examine(Installation& installation, bool login);

// The parts. `known` is what has been found before.

/// The settings store gives values. When it does not, nothing else is worth looking at.
Findings checkStore(Installation& installation);
/// Every setting that an operation needs is there, and every value is one of its type.
Findings checkValues(Installation& installation);
/// Paths are those of this machine; ini file, trace file and order book can be written.
Findings checkFiles(Installation& installation, const Findings& known);
/// The host database opens, has the host's tables, and takes what the component writes.
Findings checkDatabase(Installation& installation, const Findings& known);
/// Client certificate and key, when the settings call for them.
Findings checkClientCertificate(Installation& installation, const Findings& known);
/// The gateway answers, whatever it answers; with `login` it also takes the account.
Findings checkGateway(Installation& installation, const Findings& known, bool login);
/// Photos and signatures can be read, and prepared for an order.
Findings checkImages(Installation& installation, const Findings& known);
/// No message in the order book has an unknown outcome; nothing without a book.
Findings checkOrderBook(Installation& installation, const Findings& known);
/// The automation classes of the host, and the fonts of the windows.
Findings checkSurroundings(Installation& installation);

/// The value of a setting as the component finds it, without blanks at its ends; a secret one is scrambled.
std::string valueOf(Installation& installation, std::string_view path);

}  // namespace kartix::host
