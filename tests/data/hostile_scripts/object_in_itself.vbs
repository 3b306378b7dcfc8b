' expect: 7
Class Node
Public Link, b, c
End Class
Do : Set o = New Node : Set o.Link = o : Loop
