' expect: 7
Dim a() : n = 0 : Do : n = n + 1 : ReDim Preserve a(n) : Loop
