' things around calls and references
Sub ByR(ByRef a, ByVal b) : a = a & "!" : b = "changed" : End Sub
Dim s1, s2 : s1 = "s" : s2 = "t"
ByR s1, s2 : WScript.Echo s1 & s2
Call ByR(s1, s2) : WScript.Echo s1 & s2
ByR (s1), s2 : WScript.Echo s1
Function Cnt(ByRef n) : n = n + 1 : Cnt = n : End Function
Dim n : n = 0
WScript.Echo Cnt(n) + Cnt(n) * 10, n
' optional (missing) args
Sub Opt(a, b) : WScript.Echo TypeName(a), TypeName(b), IsEmpty(a) : End Sub
Opt , 5
' implicit variable passed by reference
Sub Fill(x) : x = Array(1, 2, 3) : End Sub
Fill newArr
WScript.Echo UBound(newArr) & newArr(2)
Sub Local1
  Fill loc
  WScript.Echo loc(1) & IsEmpty(globalNever)
  loc(1) = 9 : WScript.Echo loc(1)
End Sub
Local1
' function object
Function Twice(x) : Twice = x * 2 : End Function
Dim f : Set f = GetRef("Twice")
WScript.Echo f(2) & f(f(3))
' recursion with arrays
Function Sum(a, i) : If i > UBound(a) Then : Sum = 0 : Else : Sum = a(i) + Sum(a, i + 1) : End If : End Function
WScript.Echo Sum(Array(1, 2, 3, 4), 0)
' array functions returning arrays and copies
Function Mk() : Dim z(2) : z(0) = "m" : Mk = z : End Function
Dim mk1 : mk1 = Mk() : mk1(0) = "q" : WScript.Echo mk1(0) & Mk()(0)
ReDim Preserve mk1(5) : WScript.Echo UBound(mk1)
' two-dim redim preserve
Dim d2() : ReDim d2(1, 1) : d2(1, 1) = 4 : ReDim Preserve d2(1, 3) : WScript.Echo d2(1, 1) & UBound(d2, 2)
' property with arguments and set
Class Grid
  Private cells(2, 2)
  Public Property Let Cell(x, y, v) : cells(x, y) = v : End Property
  Public Property Set Cell(x, y, v) : Set cells(x, y) = v : End Property
  Public Property Get Cell(x, y)
    If IsObject(cells(x, y)) Then Set Cell = cells(x, y) Else Cell = cells(x, y)
  End Property
  Public Sub Run : Cell(0, 0) = "in" : WScript.Echo Cell(0, 0) : cells(1, 2) = 3 : WScript.Echo Me.Cell(1, 2) : End Sub
End Class
Dim g : Set g = New Grid
g.Cell(1, 1) = 5 : WScript.Echo g.Cell(1, 1) + 1
Set g.Cell(2, 2) = g : WScript.Echo TypeName(g.Cell(2, 2))
g.Run
Set g.Cell(2, 2) = Nothing
' with nesting, exits
Dim i, j
For i = 1 To 3
  With g
    For Each j In Array(1, 2, 3)
      If j = 2 Then Exit For
      WScript.Echo i & j & .Cell(1, 1)
    Next
  End With
  If i = 2 Then Exit For
Next
Do
  Do While True : Exit Do : Loop
  i = i + 1
  If i > 4 Then Exit Do
Loop
WScript.Echo i
' select with mixed types, ranges of lists, nested
Function Sel(v)
  Select Case v
    Case 1, "one" : Sel = "one"
    Case 2.5 : Sel = "real"
    Case True : Sel = "true"
    Case Else
      Select Case TypeName(v)
        Case "String" : Sel = "text"
        Case Else : Sel = "other"
      End Select
  End Select
End Function
WScript.Echo Sel(1), Sel("one"), Sel(2.5), Sel(True), Sel("x"), Sel(7)
' on error inside class and nested
Class Res
  Public Sub Do1 : On Error Resume Next : Err.Raise 5 : WScript.Echo "in " & Err.Number : End Sub
  Public Sub Do2 : Err.Raise 6 : WScript.Echo "unreached" : End Sub
End Class
Dim r : Set r = New Res
On Error Resume Next
r.Do1 : WScript.Echo "out " & Err.Number : Err.Clear
r.Do2 : WScript.Echo "out " & Err.Number : Err.Clear
On Error GoTo 0
' string compare and constants in class, const in sub
Sub CS : Const Z = 3, Y = "y" : WScript.Echo Z & Y : End Sub
CS
' eval with locals, execute defining local
Sub EvalLocal(p)
  Dim q : q = 2
  WScript.Echo Eval("p + q * 2")
  Execute "q = p * 10 : r2 = 5"
  WScript.Echo q & IsEmpty(r2)
  Execute "p = ""new"""
  WScript.Echo p
End Sub
Dim ev : ev = 1 : EvalLocal ev : WScript.Echo ev
' colon and line continuation oddities
If True Then : WScript.Echo "colon then" : End If
If False Then WScript.Echo "a" : WScript.Echo "b" Else WScript.Echo "c" : WScript.Echo "d"
Dim x1, _
    x2
x1 = 1 : x2 = _
  2
WScript.Echo x1 + _
  x2
For i = 1 To 2 : If i = 1 Then WScript.Echo "i1" Else WScript.Echo "i2"
Next
WScript.Echo [x1]
Dim [class] : [class] = 4 : WScript.Echo [Class]
WScript.Echo TypeName(Nothing), TypeName(r), TypeName(Err), TypeName(f), TypeName(WScript)
WScript.Echo VarType(r) & IsObject(Nothing) & (r Is Nothing)
Randomize 5
Randomize
Stop
WScript.Echo Typename(Now) & " " & (Rnd < 1)
Erase newArr : WScript.Echo IsArray(newArr)
i = 5
For i = i To i + 1 : WScript.Echo i : Next
Dim big : For i = 32766 To 32769 : big = big & TypeName(i) & " " : Next : WScript.Echo big
For i = 3 To 1 : WScript.Echo "never" : Next
WScript.Echo i
Dim dt : For dt = #1/1/2006# To #1/3/2006# : WScript.Echo dt : Next
