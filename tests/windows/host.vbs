' A host as an authority would write it: inquires, orders, corrects the place of residence, looks it up.
' cscript //nologo host.vbs CLERK PERSON RECORD DATABASE PROTOCOL [SERVER]
Dim kartix, person, datenbank, protokoll, server, anweisung, cursor, nummer, lfdnr
If WScript.Arguments.Count > 5 Then server = WScript.Arguments(5)
nummer = WScript.Arguments(1) : lfdnr = WScript.Arguments(2)
Set protokoll = CreateObject("Scripting.FileSystemObject").CreateTextFile(WScript.Arguments(4), True)
Set kartix = CreateObject("Kartix")
protokoll.WriteLine "init: " & kartix.init(WScript.Arguments(0), nummer)
protokoll.WriteLine "ZKRAnfrage: " & kartix.ZKRAnfrage(lfdnr)
protokoll.WriteLine kartix.kartennr & "|" & kartix.gueltigbis & "|" & kartix.familienname & "|" & kartix.vorname
protokoll.WriteLine "FahrerKartenBestellung: " & kartix.FahrerKartenBestellung(lfdnr)
protokoll.WriteLine kartix.kartennr & "|" & kartix.bestelldatum & "|" & kartix.scode & "|" & kartix.scodetxt
protokoll.WriteLine "KartenMitteilung: " & kartix.KartenMitteilung("2") & ", KartenStorno: " & kartix.KartenStorno("3")
Set person = CreateObject("CPersonalien")
person.Wohnort = "Köln-Mülheim €"
protokoll.WriteLine "update: " & person.update(nummer) & " " & person.wohnort
Set datenbank = CreateObject("dbetxtdatabase.1")
protokoll.WriteLine "init: " & datenbank.init(server, "1", "", "", WScript.Arguments(3), "", "")
anweisung = "select wohnort, personennummer from personalien where personennummer = " & nummer
protokoll.WriteLine "query: " & datenbank.query(anweisung, cursor) & " " & TypeName(anweisung) & " " & (Len(cursor) > 0)
protokoll.WriteLine datenbank.Datafield(1) & "|" & datenbank.DATAFIELD(2)
datenbank.closeCursor cursor
protokoll.WriteLine "Ende"
