' A host as an authority would write it: inquires, orders, corrects the place of residence, looks it up.
' cscript //nologo host.vbs CLERK PERSON RECORD
Dim kartix, person, datenbank, zeile, cursor, clerk, nummer, lfdnr
clerk = WScript.Arguments(0) : nummer = WScript.Arguments(1) : lfdnr = WScript.Arguments(2)
Set kartix = CreateObject("Kartix")
If Not kartix.init(clerk, nummer) Then WScript.Echo "init: Falsch" : WScript.Quit 1
WScript.Echo "ZKRAnfrage: " & kartix.ZKRAnfrage(lfdnr)
WScript.Echo kartix.kartennr & "|" & kartix.gueltigbis & "|" & Zeichen(kartix.familienname) & "|" & Zeichen(kartix.vorname)
WScript.Echo "FahrerKartenBestellung: " & kartix.FahrerKartenBestellung(lfdnr)
WScript.Echo kartix.bestelldatum & "|" & kartix.scode & "|" & Zeichen(kartix.scodetxt)
WScript.Echo "KartenMitteilung: " & kartix.KartenMitteilung("2") & ", KartenStorno: " & kartix.KartenStorno("3")
Set person = CreateObject("CPersonalien")
person.wohnort = "K" & ChrW(246) & "ln-M" & ChrW(252) & "lheim " & ChrW(8364) & ChrW(269)
WScript.Echo "update: " & person.update(nummer) & " " & TypeName(person.update(nummer))
Set datenbank = CreateObject("dbetxtdatabase.1")
WScript.Echo "init: " & datenbank.init("", "", "", "", WScript.Arguments(3), "", "")
zeile = "select wohnort, personennummer from personalien where personennummer = " & nummer
WScript.Echo "query: " & datenbank.query(zeile, cursor) & " " & TypeName(zeile) & " " & (Len(cursor) > 0)
WScript.Echo Zeichen(datenbank.Datafield(1)) & "|" & datenbank.DATAFIELD(2)
datenbank.closeCursor cursor

' Characters beyond ASCII by their numbers: what a console shows of them is its own affair.
Function Zeichen(text)
  Dim i, code
  For i = 1 To Len(text)
    code = AscW(Mid(text, i, 1)) And &HFFFF&
    If code > 126 Then Zeichen = Zeichen & "<" & code & ">" Else Zeichen = Zeichen & Mid(text, i, 1)
  Next
End Function
