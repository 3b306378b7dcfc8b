' expect: 7
Dim a() : n = 1 : Do : n = n * 2 : ReDim Preserve a(n) : Loop
