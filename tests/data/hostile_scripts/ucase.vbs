' expect: 7
x = String(10000000, "x") : y = UCase(x)
