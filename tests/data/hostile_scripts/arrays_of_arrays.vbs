' expect: 7
a = Array(1) : Do : a = Array(a, a) : b = Array(b, a) : Loop
