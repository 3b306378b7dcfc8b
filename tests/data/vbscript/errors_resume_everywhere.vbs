Class CA
  Private Sub Class_Initialize : WScript.Echo "init" : End Sub
  Public Sub Boom : Dim z : z = 1 / 0 : End Sub
  Private Sub Class_Terminate : WScript.Echo "term" : End Sub
End Class
Sub Outer
  Dim o : Set o = New CA
  o.Boom
  WScript.Echo "not here"
End Sub
On Error Resume Next
Outer
WScript.Echo Err.Number
Err.Clear
If True Then
  x = 1 / 0
  WScript.Echo "in if " & Err.Number
End If
Err.Clear
For i = 1 To 2
  y = CInt("q" & i)
  WScript.Echo i & " " & Err.Number
  Err.Clear
Next
Do While 1 / 0 = 1
  WScript.Echo "body " & Err.Number
  n = n + 1
  If n > 1 Then Exit Do
Loop
Err.Clear
Select Case 1 / 0
  Case 1 : WScript.Echo "c1"
  Case Else : WScript.Echo "else"
End Select
WScript.Echo "sel " & Err.Number : Err.Clear
Select Case 1
  Case 1 / 0 : WScript.Echo "c1 " & Err.Number
  Case 1 : WScript.Echo "c2"
End Select
Err.Clear
If False Then
ElseIf 1 / 0 Then
  WScript.Echo "elseif " & Err.Number
Else
  WScript.Echo "else"
End If
Err.Clear
With Nothing
  .Foo
  WScript.Echo "with " & Err.Number
End With
Err.Clear
a = Array(1,2)
a(5) = 1 : WScript.Echo Err.Number : Err.Clear
a(0)(1) = 3 : WScript.Echo Err.Number : Err.Clear
b(1) = 3 : WScript.Echo Err.Number : Err.Clear
Set c = 5 : WScript.Echo Err.Number : Err.Clear
d.x = 5 : WScript.Echo Err.Number : Err.Clear
Set d.x = Nothing : WScript.Echo Err.Number : Err.Clear
WScript.Nope : WScript.Echo Err.Number : Err.Clear
WScript.Name = 5 : WScript.Echo Err.Number : Err.Clear
x = WScript.Echo : WScript.Echo Err.Number : Err.Clear
ReDim q(1, 2) : q(0) = 1 : WScript.Echo Err.Number : Err.Clear
ReDim q(-2) : WScript.Echo Err.Number : Err.Clear
ReDim q("x") : WScript.Echo Err.Number : Err.Clear
Err.Raise 0 : WScript.Echo Err.Number : Err.Clear
Err.Raise "x" : WScript.Echo Err.Number : Err.Clear
Err.Raise 50000 : WScript.Echo Err.Number & Err.Description : Err.Clear
Err.Number = 12 : WScript.Echo Err.Number & Err.Description : Err.Clear
Err.Description = "q" : WScript.Echo Err.Number & Err.Description : Err.Clear
Err.Raise 438, "me" : WScript.Echo Err.Description & Err.Source : Err.Clear
x = GetRef("Outer")(1) : WScript.Echo Err.Number : Err.Clear
Erase Nothing1 : WScript.Echo Err.Number : Err.Clear
z1 = Not "a" : WScript.Echo Err.Number : Err.Clear
z1 = -"a" : WScript.Echo Err.Number : Err.Clear
z1 = "a" And 1 : WScript.Echo Err.Number : Err.Clear
z1 = New CA
WScript.Echo Err.Number : Err.Clear
Call Outer(1) : WScript.Echo Err.Number : Err.Clear
