' expect: 7
ReDim k(100000) : For i = 0 To 100000 : Set k(i) = New RegExp : k(i).Pattern = "(a)*b" & i : k(i).Test "" : Next
