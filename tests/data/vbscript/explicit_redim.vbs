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
q = 1
