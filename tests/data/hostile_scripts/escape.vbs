' expect: 7
x = Escape(String(5000000, ChrW(1000)))
