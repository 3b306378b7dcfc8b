' expect: 7
s = "x" : Do : s = s & s : Loop
