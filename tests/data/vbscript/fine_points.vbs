' What an object changes while its default member is read comes too late for what stands left of it.
Class Loud
Public Default Property Get Text : s = s & "!" : Text = "obj" : End Property
End Class
Dim o : Set o = New Loud
s = "a" : s = s & o & "x" : WScript.Echo s
s = "a" : s = s & "-" & o & 1 & Null : WScript.Echo s
Sub Grow(t) : t = "b" : t = t & o & "y" : WScript.Echo t : End Sub
Grow s
Function Own : Dim s, t : s = "c" : t = s & Other(t) & s : s = s & Other(t) & Len(t) : Own = s & "," & t : End Function
Function Other(p) : p = p & "o" : Other = "(" & p & ")" : End Function
WScript.Echo Own
Sub Half : Dim t : t = "d" : On Error Resume Next : t = t & "e" & Array(1) & "f" : WScript.Echo t & Err.Number : End Sub
Half
Function Swap(p) : p = 10 : Swap = 1 : End Function
Sub Sums : Dim n, k : n = 1 : k = n + Swap(n) : WScript.Echo k & " " & n : n = 2 : k = n + Swap(k) + Eval("Swap(n)") : WScript.Echo k & " " & n : End Sub
Sums

' What one text declares the next one sees, in this procedure alone.
Sub Texts
    Execute "Dim n, list(1) : n = 1 : list(1) = 5"
    Execute "n = n + list(1) : Execute ""Dim inner : inner = n"" : m = n * 2"
    Execute "WScript.Echo n & "" "" & m & "" "" & Eval(""inner + 1"")"
End Sub
Texts : Texts
WScript.Echo IsEmpty(n) & IsEmpty(m) & IsEmpty(inner)

' What a text reads before another one declares it is the same variable, in later texts too.
Sub Late
    Execute "WScript.Echo TypeName(n) : Execute ""Dim n : n = 3"" : WScript.Echo n"
    Execute "n = n + 1 : Bump k : WScript.Echo n & "" "" & Eval(""k + n"")"
End Sub
Sub Bump(p) : p = p + 2 : End Sub
Late

' Arrays as they are declared.
On Error Resume Next
Dim bare(), fixed(1), x : fixed(1) = "kept"
For Each x In bare : WScript.Echo Err.Number & Err.Description : Next : Err.Clear
fixed = 5 : WScript.Echo Err.Number & Err.Description : Err.Clear
fixed = 1 + 1 : WScript.Echo Err.Number & fixed(1) : Err.Clear
Sub Assign(a) : a = Array(1) : End Sub
Assign fixed : WScript.Echo Err.Number & fixed(1) : Err.Clear
Set fixed = o : WScript.Echo Err.Number & fixed(1) : Err.Clear
bare = Array(7) : WScript.Echo Err.Number & bare(0)
ReDim bare(2) : bare = 3 : WScript.Echo Err.Number & bare
If True Then Rem a remark
End If
Rem another : x = 1 / 0
WScript.Echo Err.Number : Rem and the last
