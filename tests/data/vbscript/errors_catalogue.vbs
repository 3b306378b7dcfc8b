On Error Resume Next
Dim a : a = 5
a.b = 3 : WScript.Echo Err.Number & Err.Description : Err.Clear
WScript.Echo a(0) : WScript.Echo Err.Number & Err.Description : Err.Clear
a 5 : WScript.Echo Err.Number & Err.Description : Err.Clear
Foo = Bar(1) : WScript.Echo Err.Number & Err.Description : Err.Clear
Set z = Nothing : z.x : WScript.Echo Err.Number & Err.Description : Err.Clear
WScript.Echo z : WScript.Echo Err.Number & Err.Description : Err.Clear
WScript.Echo "x" & z : WScript.Echo Err.Number & Err.Description : Err.Clear
If z = 1 Then WScript.Echo "entered"
WScript.Echo Err.Number & Err.Description : Err.Clear
WScript.Echo CStr(CreateObject("Scripting.Dictionary")) : WScript.Echo Err.Number & Err.Description : Err.Clear
x = Array(1)(5) : WScript.Echo Err.Number & Err.Description : Err.Clear
Dim u() : WScript.Echo UBound(u) : WScript.Echo Err.Number & Err.Description : Err.Clear
u(0) = 1 : WScript.Echo Err.Number & Err.Description : Err.Clear
Call NoSuch : WScript.Echo Err.Number & Err.Description : Err.Clear
NoSuch : WScript.Echo Err.Number & Err.Description : Err.Clear
x = NoSuch : WScript.Echo Err.Number & IsEmpty(x) : Err.Clear
x = NoSuch() : WScript.Echo Err.Number & IsEmpty(x) : Err.Clear
WScript.Echo Len(1, 2) : WScript.Echo Err.Number & Err.Description : Err.Clear
Sub TakesOne(x) : End Sub
TakesOne 1, 2 : WScript.Echo Err.Number & Err.Description : Err.Clear
x = 10 : x = x / 0 : WScript.Echo x & Err.Number : Err.Clear
For i = 1 To "a" : n = n + 1 : Next : WScript.Echo n & Err.Number & Err.Description: Err.Clear
For Each i In Nothing : WScript.Echo "b" : Next : WScript.Echo Err.Number & Err.Description : Err.Clear
Err.Raise 1, , "only desc" : WScript.Echo Err.Source & "|" & Err.Description : Err.Clear
Err.Raise vbObjectError + 513 : WScript.Echo Err.Number & "|" & Err.Description & "|" & Err.Source : Err.Clear
Err.Raise -1 : WScript.Echo Err.Number & Err.Description : Err.Clear
Err.Raise 70000 : WScript.Echo Err.Number & Err.Description : Err.Clear
Class K : Public Sub S : Me.T : End Sub : Private Sub T : WScript.Echo "T" : End Sub : End Class
Set k1 = New K : k1.S : WScript.Echo Err.Number : Err.Clear
x = Empty : x.y = 1 : WScript.Echo Err.Number & Err.Description : Err.Clear
Set x.y = k1 : WScript.Echo Err.Number & Err.Description : Err.Clear
WScript.Echo TypeName(x) & TypeName(k1)
Set arr(0) = k1 : WScript.Echo Err.Number & Err.Description : Err.Clear
Dim f(1) : Set f(0) = 5 : WScript.Echo Err.Number & Err.Description : Err.Clear
f(0) = k1 : WScript.Echo Err.Number & Err.Description : Err.Clear
f(2) = 1 : WScript.Echo Err.Number & Err.Description : Err.Clear
f("a") = 1 : WScript.Echo Err.Number & Err.Description : Err.Clear
f(Null) = 1 : WScript.Echo Err.Number & Err.Description : Err.Clear
f(0, 0) = 1 : WScript.Echo Err.Number & Err.Description : Err.Clear
With 5 : .x = 1 : WScript.Echo Err.Number & Err.Description : End With : Err.Clear
On Error GoTo 0
Execute "On Error Resume Next : x = 1/0 : WScript.Echo ""ex "" & Err.Number"
WScript.Echo Err.Number
x = Eval("NoSuch2(1)")
