' expect: 13
x = CLng(String(10000000, "1"))
