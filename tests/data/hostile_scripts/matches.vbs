' expect: 7
Set r = New RegExp : r.Global = True : r.Pattern = "." : Set m = r.Execute(String(5000000, "x"))
