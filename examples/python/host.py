"""A host application in Python: an inquiry and an order for one card record of one person."""

import sys

import kartix


def validity(day):
    """What the host knows of the day: a card that has just been ordered has none before it is produced."""
    return "the end of its validity is not known yet" if day == "00.00.0000" else f"valid until {day}"


def work(clerk, person, record):
    kartix.use_gateway_objects()
    with kartix.Kartix() as session:
        if not session.init(clerk, person):
            return "init: False"
        for operation, done in ((session.ZKRAnfrage, "found"), (session.FahrerKartenBestellung, "ordered")):
            result = operation(record)
            if result != 1:
                number, text = kartix.last_error()
                return f"{operation.__name__}: {result}: ({number}) {text}"
            print(f"{done} {session.kartennr}, {validity(session.gueltigbis)}")
    return None


if __name__ == "__main__":
    if len(sys.argv) != 4:
        print("usage: host.py CLERK PERSON CARD-RECORD", file=sys.stderr)
        sys.exit(2)
    sys.exit(work(*sys.argv[1:]))
