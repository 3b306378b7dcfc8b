' expect: 7
x = Join(Split(Space(200000), " "), String(1000, "x"))
