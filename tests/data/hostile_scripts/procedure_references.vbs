' expect: 7
Sub Idle : End Sub
ReDim k(1000000) : For i = 0 To 1000000 : Set k(i) = GetRef("Idle") : Next
