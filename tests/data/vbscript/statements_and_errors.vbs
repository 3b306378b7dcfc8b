' property let/set/get with args, default
Class PC
  Private d
  Private Sub Class_Initialize : Set d = CreateObject("Scripting.Dictionary") : End Sub
  Public Default Property Get Item(k) : Item = d(k) : End Property
  Public Property Let Item(k, v) : d(k) = v : End Property
  Public Property Set Obj(o) : Set d = o : End Property
  Public Property Get Obj : Set Obj = d : End Property
  Public Arr(3)
  Public Dyn()
  Public Sub Grow : ReDim Dyn(2) : Dyn(1) = "g" : End Sub
  Public Function Self : Set Self = Me : End Function
End Class
Dim p : Set p = New PC
p("a") = 5 : p.Item("b") = 6
WScript.Echo p("a") & p.Item("b") & p.Obj.Count
p.Arr(2) = "x" : WScript.Echo p.Arr(2)
p.Grow : WScript.Echo p.Dyn(1)
WScript.Echo p.Self.Self.Item("a")
With p
 .Item("c") = 7
 WScript.Echo .Item("c") & .Self.Item("c")
 With .Obj
   WScript.Echo .Count
   .Add "z", 1
   WScript.Echo .Exists("z")
 End With
End With
' nested arrays assign
Dim n : n = Array(Array(1,2),Array(3,4))
n(0)(1) = 99 : WScript.Echo n(0)(1) & n(1)(1)
Dim m(2) : m(0) = Array(1) : m(0)(0) = "in" : WScript.Echo m(0)(0)
' byref elements
Sub Inc(x) : x = x + 1 : End Sub
Dim a(2) : a(1) = 5 : Inc a(1) : WScript.Echo a(1)
Dim mm(1,1) : mm(1,0) = 3 : Inc mm(1,0) : WScript.Echo mm(1,0)
Sub Swap(x,y) : Dim t : t = x : x = y : y = t : End Sub
a(0)=1:a(2)=2: Swap a(0), a(2) : WScript.Echo a(0) & a(2)
' select
Select Case 3
 Case 1,2 : WScript.Echo "no"
 Case 3,4 WScript.Echo "yes"
End Select
Select Case "x"
 Case "y"
 Case Else WScript.Echo "else"
End Select
Dim i
For i = 10 To 1 Step -3 : WScript.Echo i : Next
WScript.Echo "after " & i
For i = 1 To 0 : Next : WScript.Echo i
For i = 1 To 2 Step 0.5 : WScript.Echo i & TypeName(i) : Next
Do : i = i + 1 : If i > 5 Then Exit Do
Loop Until False
WScript.Echo i
Do Until i < 2 : i = i - 1 : Loop : WScript.Echo i
Do : i = i + 1 : Loop While i < 4 : WScript.Echo i
While i > 0 : i = i - 1 : Wend : WScript.Echo i
' error in callee resumes after call in caller
Sub Bad : WScript.Echo "b1" : x = 1/0 : WScript.Echo "b2" : End Sub
On Error Resume Next
Bad : WScript.Echo "after bad " & Err.Number
Err.Clear
Err.Raise 5
WScript.Echo Err.Number & Err.Description & "|" & Err.Source
Err.Raise vbObjectError + 1, "src", "desc", "hf", 12
WScript.Echo Err.Number & Err.Description & "|" & Err.Source & Err.HelpFile & Err.HelpContext
WScript.Echo Err
On Error GoTo 0
WScript.Echo Err.Number
Dim o : Set o = Nothing
On Error Resume Next
o.Foo : WScript.Echo Err.Number & Err.Description : Err.Clear
Dim e : e.Foo : WScript.Echo Err.Number & Err.Description : Err.Clear
x = o : WScript.Echo Err.Number & Err.Description : Err.Clear
Set x = 5 : WScript.Echo Err.Number & Err.Description : Err.Clear
x = p.Nope : WScript.Echo Err.Number & Err.Description : Err.Clear
Undef 5 : WScript.Echo Err.Number & Err.Description : Err.Clear
x = Undef2(5) : WScript.Echo Err.Number & Err.Description : Err.Clear
Inc : WScript.Echo Err.Number & Err.Description : Err.Clear
x = Len() : WScript.Echo Err.Number & Err.Description : Err.Clear
x = New Foo : WScript.Echo Err.Number & Err.Description : Err.Clear
Set x = New Foo : WScript.Echo Err.Number & Err.Description : Err.Clear
Const K = 5
K = 6 : WScript.Echo Err.Number & Err.Description : Err.Clear
Dim arr(2)
x = arr + 1 : WScript.Echo Err.Number & Err.Description : Err.Clear
ReDim arr(5) : WScript.Echo Err.Number & Err.Description : Err.Clear
Set x = CreateObject("No.Such") : WScript.Echo Err.Number & Err.Description : Err.Clear
x = "abc" + 1 : WScript.Echo Err.Number & Err.Description : Err.Clear
x = CInt("99999") : WScript.Echo Err.Number & Err.Description : Err.Clear
p.Self = 5 : WScript.Echo Err.Number & Err.Description : Err.Clear
x = p.Grow(1) : WScript.Echo Err.Number & Err.Description : Err.Clear
If p Is Nothing Then WScript.Echo "no" Else WScript.Echo "is"
If 5 Is p Then WScript.Echo "?"
WScript.Echo Err.Number & Err.Description : Err.Clear
For Each x In 5 : Next : WScript.Echo Err.Number & Err.Description : Err.Clear
Execute "x = = 1" : WScript.Echo Err.Number & Err.Description & Err.Source: Err.Clear
Function R(n) : R = R(n+1) : End Function
x = R(1) : WScript.Echo Err.Number & Err.Description : Err.Clear
