Option Explicit
ReDim a(3)
a(1)=2
WScript.Echo UBound(a) & a(1)
Sub S
ReDim b(1)
b(0) = 5
ReDim a(7)
WScript.Echo b(0)
End Sub
S
WScript.Echo UBound(a)
Sub Later : list(1) = 4 : WScript.Echo list(1) : End Sub
ExecuteGlobal "Dim list(2)"
Later
Sub Texts
On Error Resume Next
Execute "Dim n : n = 5"
n = n + 1 : WScript.Echo n
For z = 1 To 3 : n = n + 1 : Next : WScript.Echo n & " " & Err.Number
End Sub
Texts
q = 1
