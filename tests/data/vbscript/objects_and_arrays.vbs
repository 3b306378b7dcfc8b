' Events of numbers and names: default property of host objects, dictionary in expression
Dim d : Set d = CreateObject("Scripting.Dictionary")
d("x") = 1
d("x") = d("x") + 1
d.Item("y") = d("x") & "!"
WScript.Echo d("x") & d("y") & d.Count
Dim k, t
For Each k In d.Keys : t = t & k : Next
WScript.Echo t
Set d("self") = d
WScript.Echo d("self")("self")("x")
Set d("self") = Nothing
d.Remove "self"
' array inside dictionary
d("arr") = Array(1, 2, 3)
WScript.Echo d("arr")(1) & UBound(d("arr"))
d("arr")(1) = 99
WScript.Echo d("arr")(1)
Dim tmp : tmp = d("arr") : tmp(1) = 98 : d("arr") = tmp : WScript.Echo d("arr")(1)
' class holding array and dictionary
Class Store
  Private items, count
  Private Sub Class_Initialize : ReDim items(0) : count = 0 : End Sub
  Public Sub Add(x)
    If count > UBound(items) Then ReDim Preserve items(count * 2)
    If IsObject(x) Then Set items(count) = x Else items(count) = x
    count = count + 1
  End Sub
  Public Property Get Size : Size = count : End Property
  Public Default Property Get Item(i)
    If i < 0 Or i >= count Then Err.Raise 9, "Store", "bad index " & i
    If IsObject(items(i)) Then Set Item = items(i) Else Item = items(i)
  End Property
End Class
Dim s : Set s = New Store
Dim i : For i = 1 To 20 : s.Add i * i : Next
s.Add s
WScript.Echo s.Size & " " & s(3) & " " & s(20).Size & " " & s(20)(4)
On Error Resume Next
WScript.Echo s(99)
WScript.Echo Err.Number & Err.Description & Err.Source
Err.Clear
WScript.Echo s.items : WScript.Echo Err.Number : Err.Clear
s.Size = 3 : WScript.Echo Err.Number : Err.Clear
' compare objects, Is
Dim s2 : Set s2 = s
WScript.Echo (s Is s2) & (s Is Nothing) & Not (s Is Nothing)
WScript.Echo TypeName(s.Item(20)) & VarType(s.Item(0))
' date literals
WScript.Echo #2006-01-14# & " " & #1/14/06# & " " & #January 14, 2006# & " " & #14:30# & " " & #1/14/2006 2:30:05 PM#
' byref in property
Class Ref2
  Public Sub Bump(ByRef n) : n = n + 1 : End Sub
  Public Function Twice(n) : n = n * 2 : Twice = n : End Function
End Class
Dim r : Set r = New Ref2
Dim v : v = 5 : r.Bump v : WScript.Echo v
WScript.Echo r.Twice(v) & v
WScript.Echo r.Twice((v)) & v
Dim a2(2) : a2(0) = 7 : r.Bump a2(0) : WScript.Echo a2(0)
r.Bump s.Item(0) : WScript.Echo s(0)
' functions with same variable names, recursion with local arrays
Function Perm(str, depth)
  Dim loc(1) : loc(0) = depth
  If depth > 0 Then Perm = Perm(str & loc(0), depth - 1) & loc(0) Else Perm = str
End Function
WScript.Echo Perm("", 3)
Function Multi() : Multi = Array("a", Array("b", "c")) : End Function
WScript.Echo Multi()(1)(0) & Multi()(0)
WScript.Echo Join(Multi()(1), "-")
' Let vs Set for function results
Function GetO : Set GetO = r : End Function
Dim o2 : o2 = GetO : WScript.Echo Err.Number : Err.Clear
Set o2 = GetO() : WScript.Echo TypeName(o2)
With New Ref2 : v = 1 : .Bump v : WScript.Echo v : End With
If IsEmpty(undefinedThing) Then WScript.Echo "undef empty"
WScript.Echo UBound(Array(1,2,3)) + LBound(Array(1))
WScript.Echo (1 + 2) * 3
WScript.Echo (1), (2)
Dim z : z = 3 : z = z - 1 : WScript.Echo z -1
WScript.Echo z-1
WScript.Echo Abs(-3) -1
WScript.Echo "a" _
  & "b"
