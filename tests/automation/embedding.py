"""The module for Python over the library: every member of every class, what is refused, settings and objects of the host."""

import pathlib
import tempfile
import unittest

import kartix

SAMPLES = {1: True, 2: 1, 3: "Frau"}
TYPES = {0: type(None), 1: bool, 2: int, 3: str}
directory = tempfile.TemporaryDirectory()
settings = {"FS.DBName": str(pathlib.Path(directory.name) / "host.db")}
kartix.use_settings(settings.get, settings.__setitem__)


class Embedding(unittest.TestCase):
    def database(self):
        database = kartix.DBETXTDatabase()
        pathlib.Path(settings["FS.DBName"]).touch()
        self.assertIs(database.init("", "", "", "", settings["FS.DBName"], "", ""), True)
        return database

    def test_every_member_of_every_class(self):
        for name in ("Kartix", "DBETXTDatabase", "CPersonalien", "CFahrerkarte"):
            made = getattr(kartix, name)()
            for member in kartix.describe(name):
                with self.subTest(cls=name, member=member.name):
                    arguments = member.arguments[:member.count]
                    given = [SAMPLES[one.type] for one in arguments if one.direction != 2]
                    attribute = member.name.decode()
                    if member.kind == 2:
                        setattr(made, attribute, "Herr")
                        with self.assertRaises(kartix.Error) as refused:
                            setattr(made, attribute, 1)
                        self.assertEqual(refused.exception.code, 6)
                        continue
                    if name == "DBETXTDatabase" and attribute == "init":
                        given[0] = ""
                    result = getattr(made, attribute)
                    if callable(result):
                        with self.assertRaises(kartix.Error) as refused:
                            result(*given, "mehr", "mehr")
                        self.assertEqual(refused.exception.code, 5)
                        self.assertIn(attribute, str(refused.exception))
                        result = result(*given)
                    if any(one.direction for one in arguments):
                        self.assertEqual(len(result), 1 + sum(one.direction != 0 for one in arguments))
                        result = result[0]
                    self.assertIs(type(result), TYPES[member.result])

    def test_properties_and_wrong_names(self):
        person = kartix.CPersonalien()
        person.vornamen, person.anrede = "Jörg Peter", "1"
        self.assertEqual((person.vornamen, person.argoanrede, person.kbaanrede), ("Jörg Peter", "Herr", "1"))
        with self.assertRaises(AttributeError):
            person.vorname = "Jörg"
        with self.assertRaises(AttributeError):
            person.kbaanrede = "1"
        with self.assertRaises(TypeError):
            person.vornamen = 1.5
        person.close()
        with self.assertRaises(kartix.Error) as refused:
            person.vornamen
        self.assertEqual(refused.exception.code, 2)

    def test_a_query_gives_back_what_was_written(self):
        database = self.database()
        self.assertEqual(database.executeSQL("create table t (a text, b text)", True), 0)
        database.addDatafield("Müller")
        database.addDatafield("O'Neil")
        self.assertEqual(database.addDataset("t"), 0)
        rows, first, cursor = database.query("select b, a from t")
        self.assertEqual((rows, database.Datafield(1), database.Datafield(2)), (1, "O'Neil", "Müller"))
        self.assertIn("O'Neil", first)
        rows, left = database.queryNext(cursor)
        self.assertLess(rows, 0)
        self.assertEqual(left, "")
        database.closeCursor(cursor)
        code, error, _ = database.query("select nothing")
        self.assertLess(code, 0)
        self.assertIn("nothing", error)

    def test_an_operation_without_a_display_tells_why(self):
        with kartix.Kartix() as session:
            self.assertIs(session.init("Meier", "4711"), True)
            self.assertEqual(session.ZKRAnfrage("1"), -1)
            self.assertIn("keine Anzeige", kartix.last_error()[1])
        with self.assertRaises(kartix.Error) as refused:
            kartix.use_settings(settings.get)
        self.assertEqual(refused.exception.code, 9)


if __name__ == "__main__":
    unittest.main()
