// A host application in C++: an inquiry and an order for one card record of one person.
#include <kartix/Hosting.h>
#include <kartix/Kartix.h>
#include <kartix/ObjectClasses.h>

#include <iostream>

int main(int argc, char* argv[]) {
  if (argc != 4) {
    std::cerr << "usage: host CLERK PERSON CARD-RECORD\n";
    return 2;
  }
  kartix::useGatewayObjects();
  kartix::Kartix kartix;
  if (!kartix.init(argv[1], argv[2])) {
    std::cerr << "init: False\n";
    return 1;
  }
  const auto failed = [](const char* operation) {
    const kartix::LastError last = kartix::lastError();
    std::cerr << operation << ": (" << last.number << ") " << last.text << '\n';
    return 1;
  };
  if (kartix.ZKRAnfrage(argv[3]) != 1) return failed("ZKRAnfrage");
  std::cout << "found " << kartix.kartennr() << ", valid until " << kartix.gueltigbis() << '\n';
  if (kartix.FahrerKartenBestellung(argv[3]) != 1) return failed("FahrerKartenBestellung");
  std::cout << "ordered " << kartix.kartennr() << '\n';
}
