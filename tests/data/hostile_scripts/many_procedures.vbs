' expect: 7
t = Replace(String(20000, "a"), "a", "x = 1" & vbLf)
Do : i = i + 1 : ExecuteGlobal "Sub S" & i & vbLf & t & "End Sub" : Loop
