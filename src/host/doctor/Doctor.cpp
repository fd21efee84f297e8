#include "host/doctor/Doctor.h"

namespace kartix::host {

Findings examine(Installation& installation, bool login) {
  Findings found = checkStore(installation);
  if (hasFault(found)) return found;
  append(found, checkValues(installation));
  append(found, checkFiles(installation, found));
  append(found, checkDatabase(installation, found));
  append(found, checkClientCertificate(installation, found));
  append(found, checkGateway(installation, found, login));
  append(found, checkImages(installation, found));
  append(found, checkOrderBook(installation, found));
  append(found, checkSurroundings(installation));
  return found;
}

}  // namespace kartix::host
