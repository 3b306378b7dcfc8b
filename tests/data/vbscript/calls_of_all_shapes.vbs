' calls with many shapes
Class Node
  Public Value, Nxt
  Public Property Get Me2 : Set Me2 = Me : End Property
End Class
Dim head, i, n
For i = 1 To 3 : Set n = New Node : n.Value = i
 If IsEmpty(head) Then Set n.Nxt = Nothing Else Set n.Nxt = head
 Set head = n : Next
Set n = head
Do Until n Is Nothing : WScript.Echo n.Value : Set n = n.Nxt : Loop
Do While Not head Is Nothing
  Set head = head.Nxt
Loop
WScript.Echo head Is Nothing
' string building with multiple
Dim s : s = ""
For i = 1 To 3 : s = s & i & "," & (i * i) & ";" : Next
WScript.Echo s
Function B(ByVal txt, ByRef cnt) : cnt = cnt + 1 : txt = txt & cnt : B = txt : End Function
Dim c : c = 0
s = s & B("x", c) & B("y", c) : WScript.Echo s & c
' nested ifs on one line
If c = 2 Then If s <> "" Then WScript.Echo "both" Else WScript.Echo "inner" Else WScript.Echo "outer"
If c = 1 Then WScript.Echo 1 Else If c = 2 Then WScript.Echo 2 Else WScript.Echo 3
' loops with colons
i = 0 : Do : i = i + 1 : If i = 3 Then Exit Do : Loop
WScript.Echo i
While i > 0 : i = i - 1 : Wend
WScript.Echo i
For i = 1 To 3 : Select Case i : Case 2 : WScript.Echo "two" : Case Else : WScript.Echo "other" : End Select : Next
' ByRef chain
Sub L1(a) : L2 a : End Sub
Sub L2(b) : L3 b : b = b & "2" : End Sub
Sub L3(d) : d = d & "3" : End Sub
Dim ch : ch = "c" : L1 ch : WScript.Echo ch
' global modified while passed
Sub Mod1(p) : ch = "glob" : WScript.Echo p : p = "par" : WScript.Echo ch : End Sub
Mod1 ch
' function returning function-name value use inside
Function Acc(n)
  Dim k
  For k = 1 To n : Acc = Acc + k : Next
End Function
WScript.Echo Acc(10)
Function NameAsVar : NameAsVar = 1 : NameAsVar = NameAsVar + 1 : End Function
WScript.Echo NameAsVar + NameAsVar()
' exit function from loops
Function FindIt(a, x) : Dim e : FindIt = False
 For Each e In a : If e = x Then FindIt = True : Exit Function
 Next
End Function
WScript.Echo FindIt(Array(1, 2), 2) & FindIt(Array(1, 2), 5)
' comparisons chain, logical with numbers
WScript.Echo (5 And 3) & (5 Or 3) & (5 Xor 3) & (Not 5) & (True And 3)
WScript.Echo 7 \ 2 & 7 Mod 2 & -7 \ 2 & -7 Mod 2
WScript.Echo 1.5 + "2" & "3" + 4 & "3" + "4"
WScript.Echo TypeName(1 + 1.0) & TypeName(CByte(1) + CByte(2)) & TypeName(True + True) & TypeName(1 / 1) & TypeName(2 ^ 2)
WScript.Echo TypeName(#1/1/2000# + 1) & TypeName(#1/2/2000# - #1/1/2000#) & TypeName(CCur(1) * 2) & TypeName("1" + 1)
WScript.Echo 32767 + 1, TypeName(32767 + 1), TypeName(2147483647 + 1), -2147483647 - 2
' execute with class definition
ExecuteGlobal "Class Dyn" & vbCrLf & "Public X" & vbCrLf & "End Class"
Dim dy : Set dy = Eval("New Dyn") : dy.X = 4 : WScript.Echo dy.X & TypeName(dy)
Execute "Set dy = New Dyn" : WScript.Echo IsEmpty(dy.X)
Dim e1 : e1 = "1 + 2 * 3" : WScript.Echo Eval(e1) & Eval("e1") & Eval("""q""")
WScript.Echo Eval("Array(1,2)(1)")
