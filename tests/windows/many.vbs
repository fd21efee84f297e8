' A host that stays all day: COUNT sessions with an operation in one process, and what the process holds meanwhile.
' (Within a session the list of the person's cards grows with every operation.)
' cscript //nologo many.vbs CLERK PERSON RECORD COUNT PROTOCOL
Dim kartix, usage, protokoll, i, count, handles, memory
Set protokoll = CreateObject("Scripting.FileSystemObject").CreateTextFile(WScript.Arguments(4), True)
Set usage = CreateObject("KartixTest.Usage")
Set kartix = CreateObject("Kartix")
count = CLng(WScript.Arguments(3))
For i = 1 To count
  If Not kartix.init(WScript.Arguments(0), WScript.Arguments(1)) Then WScript.Quit 1
  If kartix.ZKRAnfrage(WScript.Arguments(2)) <> 1 Then protokoll.WriteLine "Vorgang " & i & " gescheitert" : WScript.Quit 1
  If i = count \ 4 Then handles = usage.Handles() : memory = usage.WorkingSet()
Next
protokoll.WriteLine usage.Handles() - handles & " " & usage.WorkingSet() - memory & " " & handles & " " & memory
