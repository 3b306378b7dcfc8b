Option Explicit
' continuation, comments
Dim a, _
    b, c ' trailing
Rem a comment : WScript.Echo "no"
a = 1 : b = 2 : Rem another
If a = 1 And _
   b = 2 Then ' c
  WScript.Echo "cont" ' x
End If
Class TC
  Public Name
  Private Sub Class_Initialize() : Name = "new" : End Sub
  Private Sub Class_Terminate() : WScript.Echo "T " & Name : End Sub
  Public Function Clone(n) : Dim x : Set x = New TC : x.Name = n : Set Clone = x : End Function
End Class
Dim t : Set t = New TC
t.Clone("tmp")
WScript.Echo "after tmp"
t.Clone("chain").Clone("chain2").Name = "z"
WScript.Echo "after chain"
If t.Clone("cond").Name = "cond" Then WScript.Echo "in if"
WScript.Echo TypeName(t.Clone("tn")) & "."
If t.Clone("isn") Is Nothing Then WScript.Echo "?" Else WScript.Echo "else"
Dim arr(2) : Set arr(0) = t.Clone("e0") : Set arr(1) = t.Clone("e1")
Set arr(0) = Nothing
WScript.Echo "erase" : Erase arr : WScript.Echo "erased"
Sub F(x) : WScript.Echo "F " & x.Name : End Sub
F t.Clone("arg")
WScript.Echo "after arg"
With t.Clone("with") : WScript.Echo .Name : End With
WScript.Echo "after with"
Function Ret : Set Ret = t.Clone("ret") : End Function
Ret
WScript.Echo "after ret"
Dim q : Set q = Ret
Set q = Ret
WScript.Echo "reassigned"
q = Empty
WScript.Echo "q empty"
Dim x
For Each x In Array(t.Clone("f1"), t.Clone("f2"))
  WScript.Echo "loop " & x.Name
Next
WScript.Echo "after loop " & IsEmpty(x)
Sub ErrSub
  Dim l : Set l = t.Clone("local")
  Err.Raise 1000, "s", "d"
End Sub
On Error Resume Next
ErrSub
WScript.Echo "after err " & Err.Number
Err.Clear
Sub Nested
  On Error Resume Next
  Err.Raise 1
  WScript.Echo "n1 " & Err.Number
  ErrSub
  WScript.Echo "n2 " & Err.Number
End Sub
Nested
WScript.Echo "n3 " & Err.Number
Function WithErr
  WithErr = 5
  Err.Raise 77
End Function
Dim v : v = 3
v = WithErr
WScript.Echo v & " " & Err.Number : Err.Clear
v = 1 + CInt("x") + 2
WScript.Echo v & Err.Number : Err.Clear
Do While a < 3 : a = a + 1 : If a = 2 Then Exit Do
Loop
WScript.Echo a
Dim i, j
For i = 1 To 3
  For j = 1 To 3
    If j = 2 Then Exit For
    WScript.Echo i & j
  Next
  If i = 2 Then Exit For
Next
Class D
 Public Default Function Go(x) : Go = x * 2 : End Function
End Class
Dim dd : Set dd = New D
WScript.Echo dd(21) & dd.Go(4)
Class E2
 Public Default Property Get V : V = 42 : End Property
End Class
Dim ee : Set ee = New E2
WScript.Echo ee + 1 & ee
v = ee : WScript.Echo TypeName(v)
WScript.Echo "" & (ee = 42)
Class Priv
 Private Function Secret : Secret = "s" : End Function
 Public Function Open : Open = Secret() & Secret : End Function
 Public Property Get RO : RO = 1 : End Property
 Public Property Let WO(x) : WScript.Echo "wo" & x : End Property
End Class
Dim pr : Set pr = New Priv
WScript.Echo pr.Open
pr.Secret : WScript.Echo Err.Number & Err.Description : Err.Clear
pr.RO = 2 : WScript.Echo Err.Number & Err.Description : Err.Clear
pr.WO = 3
v = pr.WO : WScript.Echo Err.Number & Err.Description : Err.Clear
Undeclared = 5 : WScript.Echo Err.Number & Err.Description : Err.Clear
v = Undeclared2 : WScript.Echo Err.Number & Err.Description : Err.Clear
Undeclared3 5 : WScript.Echo Err.Number & Err.Description : Err.Clear
WScript.Echo Undeclared4(5) : WScript.Echo Err.Number & Err.Description : Err.Clear
Execute "Dim newv : newv = 5"
WScript.Echo newv & Err.Number : Err.Clear
ExecuteGlobal "Dim gv : gv = 6"
WScript.Echo gv & Err.Number
WScript.Echo Eval("1 +") & Err.Number & Err.Description : Err.Clear
Dim s : s = "x" : s = s & s & "y" & 1 & s : WScript.Echo s
Dim fx(3), k : For k = 0 To 3 : fx(k) = k * k : Next
WScript.Echo fx(2) & fx(UBound(fx))
WScript.Echo a &b&c&"z"
WScript.Echo &HFF &1 & &O17
WScript.Echo 1 = 1, 2 > 3, Not True
WScript.Echo(5)
WScript.Echo ("a") & ("b")
WScript.Echo -5 ^ 2, 2 ^ -1, - -3
WScript.Echo 7 Mod 3 * 2, 2 * 7 \ 3, 10 / 4 \ 2
WScript.Echo "end"
