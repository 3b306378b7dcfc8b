' expect: 7
Err.Raise 5, String(1000000, "a")
