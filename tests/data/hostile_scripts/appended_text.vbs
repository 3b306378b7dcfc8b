' expect: 7
t = String(1000, "x") : Do : s = s & t : Loop
