' expect: 7
Set r = New RegExp : r.Pattern = "(a|b)*c" : x = r.Test(String(5000000, "a"))
