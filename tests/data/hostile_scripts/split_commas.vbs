' expect: 7
x = Split(String(10000000, ","), ",")
