' expect: 7
Execute Replace(String(1000000, "a"), "a", "x = 1" & vbLf)
