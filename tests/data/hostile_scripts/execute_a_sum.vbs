' expect: 7
Execute "x = 1" & Replace(String(1000000, "a"), "a", "+1")
