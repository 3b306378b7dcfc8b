' expect: 7
ReDim a(1000) : t = String(1000, "x") : Do : For i = 0 To 1000 : a(i) = a(i) & t : Next : Loop
