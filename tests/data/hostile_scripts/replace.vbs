' expect: 7
x = Replace(String(100000, "a"), "a", String(1000, "b"))
