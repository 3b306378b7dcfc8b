' expect: 7
MsgBox String(1000000, "a")
