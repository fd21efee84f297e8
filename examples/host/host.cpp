// A host application at its smallest: one inquiry for one card record of one person.
#include <kartix/Kartix.h>

#include <iostream>

int main(int argc, char* argv[]) {
  if (argc != 4) {
    std::cerr << "usage: host CLERK PERSON CARD-RECORD\n";
    return 2;
  }
  kartix::Kartix kartix;
  if (!kartix.init(argv[1], argv[2])) {
    std::cerr << "init: False\n";
    return 1;
  }
  if (kartix.ZKRAnfrage(argv[3]) != 1) {
    std::cerr << "nothing was taken over\n";
    return 1;
  }
  std::cout << kartix.kartennr() << ", valid until " << kartix.gueltigbis() << '\n';
}
