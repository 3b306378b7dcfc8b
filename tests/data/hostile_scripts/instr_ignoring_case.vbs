' expect: 7
x = String(10000000, "x") : y = InStr(1, x, "Y", 1)
